#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../MainQueue.h"
#include "../../URLSession.h"
#include "ExpectedRequest.h"
#include "Problem.h"

namespace ovinta::platform::simulation {

/// The service as a test case writes it, and a record of what it was sent. Sends nothing itself:
/// each request is looked at when it is started and answered by a task of the main queue. A request
/// that is not as the case says is a problem, which shows it beside what was expected, and what was
/// sent before. Requests may be started from any thread; the rest belongs to the main thread.
class ScriptedService : public URLSession {
 public:
  /// `report` must not be empty.
  explicit ScriptedService(ProblemReporter report) : report_(std::move(report)) {}

  /// Has the next expected request be this one: method, a space, and path and query as they are
  /// sent, e.g. "GET /m/v1/sites?page=1"; a star at the end stands for anything. Requests are
  /// expected in the order of these calls. The last parameter is the caller's place and not to be
  /// given. The result lives as long as the service.
  ExpectedRequest& expect(std::string_view request,
                          SourceLocation place = {__builtin_FILE(), __builtin_LINE()});

  /// Lets such requests come too, any number of them and at any time; a request that is just
  /// expected counts as that. Of several that fit the one allowed last answers.
  ExpectedRequest& allow(std::string_view request,
                         SourceLocation place = {__builtin_FILE(), __builtin_LINE()});

  /// Whether the service can be reached, as it can at first. While it cannot, every request loses
  /// its connection at once, is recorded, and is not held against what is expected.
  void setReachable(bool reachable);

  /// All requests so far, in the order in which they were sent.
  std::vector<URLRequest> requests() const;
  /// The same, each as its method, path and query.
  std::vector<std::string> lines() const;
  /// How many were sent of this method, path and query; a star at the end stands for anything.
  std::size_t count(std::string_view request) const;
  /// The records that those requests carried under "data".
  std::vector<Dictionary> records(std::string_view request) const;

  /// For the use of `AppTest`: has the answers come through this main queue from now on.
  void answerThrough(std::shared_ptr<MainQueue> mainQueue);
  /// For the use of `AppTest`: reports what is expected and was not sent. Requests that come later
  /// are dropped, and nothing is reported any more.
  void close();

  void startDataTask(URLRequest request, Completion completion) override;

 private:
  struct Reply {
    /// Absent: none ever.
    std::optional<Answer> answer = {};
    TimeInterval delay{};
    std::optional<Problem> problem = {};
  };

  std::vector<URLRequest> requests(std::string_view line) const;
  Reply replyTo(const URLRequest& request);
  Reply unexpected(const URLRequest& request);
  std::string sentSoFar(std::size_t count) const;

  const ProblemReporter report_;
  mutable std::mutex mutex_;
  std::shared_ptr<MainQueue> mainQueue_;
  /// Those before `next_` have come.
  std::vector<std::unique_ptr<ExpectedRequest>> expected_;
  std::size_t next_ = 0;
  std::vector<std::unique_ptr<ExpectedRequest>> allowed_;
  std::vector<URLRequest> requests_;
  bool isReachable_ = true;
  bool isClosed_ = false;
  int unexpectedCount_ = 0;
};

}  // namespace ovinta::platform::simulation
