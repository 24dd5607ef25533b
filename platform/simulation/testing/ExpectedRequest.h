#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../Date.h"
#include "../../FatalError.h"
#include "../../URLSession.h"
#include "../../Value.h"
#include "../http/Answer.h"

namespace ovinta::platform::simulation {

/// A request that a test case expects or allows, and what the service answers to it: status 200 and
/// `{}` unless something else is said. Made by a `ScriptedService`, as one chain of calls:
///
///     service().expect("POST /m/v1/orders").with("site_id", 42).answerData(sampleOrder(7));
///
/// Complete before the request is sent; main thread only.
class ExpectedRequest {
 public:
  /// For the use of `ScriptedService`.
  ExpectedRequest(std::string_view line, SourceLocation place);

  /// Asks for that value of a field of the record that the request carries under "data". Numbers
  /// are equal when their values are, with a fraction or without.
  ExpectedRequest& with(std::string key, Value value);
  /// Asks for a body that is that JSON text, whatever the order of its keys; an empty text asks for
  /// no body.
  ExpectedRequest& withBody(std::string text);
  /// Asks for a field of the head.
  ExpectedRequest& withHeader(std::string name, std::string value);

  /// What the service answers: anything; a status with a JSON text; status 200 with {"data":
  /// record}; the same with a list as the only page of what is paged; or nothing, because the
  /// connection is lost.
  ExpectedRequest& answer(Answer answer);
  ExpectedRequest& answer(int statusCode, std::string text);
  ExpectedRequest& answerData(Value record);
  ExpectedRequest& answerPage(List records);
  ExpectedRequest& loseConnection();
  /// How long it takes until the answer comes, or the connection is lost; no time if nothing is
  /// said.
  ExpectedRequest& after(TimeInterval delay);

  /// Whether method, path and query are those of the request.
  bool isFor(const URLRequest& request) const;
  /// What else the request should have and has not, each in a line; empty for one as expected.
  std::vector<std::string> differences(const URLRequest& request) const;
  /// The request in words, with what is asked of it.
  const std::string& description() const { return description_; }
  /// Where the case states it.
  SourceLocation place() const { return place_; }
  /// What is answered, and when.
  const Answer& answer() const { return answer_; }
  TimeInterval delay() const { return delay_; }

  /// The request's method, path and query as the first line of its head has them.
  static std::string lineOf(const URLRequest& request);
  /// What the request's body has under "data"; absent where that is no JSON object.
  static std::optional<Dictionary> recordOf(const URLRequest& request);

 private:
  /// What is wrong with a request, in a line; empty for nothing.
  using Check = std::function<std::string(const URLRequest&)>;

  ExpectedRequest& demand(const std::string& words, Check check);

  const std::string line_;
  const SourceLocation place_;
  std::string description_;
  std::vector<Check> checks_;
  Answer answer_ = Answer::json(200, "{}");
  TimeInterval delay_{};
};

}  // namespace ovinta::platform::simulation
