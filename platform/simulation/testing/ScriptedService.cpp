#include "platform/simulation/testing/ScriptedService.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::simulation {
namespace {

/// From here on requests that nobody expects get no answer, so that an application that tries again
/// for ever comes to rest.
constexpr int kMostUnexpected = 20;
/// How many characters of a body, and how many earlier requests, a problem shows.
constexpr std::size_t kShownOfBody = 500;
constexpr std::size_t kShownBefore = 20;

std::string described(const URLRequest& request) {
  std::string text = ExpectedRequest::lineOf(request);
  if (!request.body || request.body->empty()) return text;
  text += " " + request.body->substr(0, kShownOfBody);
  return request.body->size() > kShownOfBody ? text + "..." : text;
}

std::string described(const ExpectedRequest& request) {
  const auto [file, line] = request.place();
  return request.description() + "   (" + std::string(file.substr(file.rfind('/') + 1)) + ":" +
         std::to_string(line) + ")";
}

}  // namespace

ExpectedRequest& ScriptedService::expect(std::string_view request, SourceLocation place) {
  const std::lock_guard lock(mutex_);
  return *expected_.emplace_back(std::make_unique<ExpectedRequest>(request, place));
}

ExpectedRequest& ScriptedService::allow(std::string_view request, SourceLocation place) {
  const std::lock_guard lock(mutex_);
  return *allowed_.emplace_back(std::make_unique<ExpectedRequest>(request, place));
}

void ScriptedService::setReachable(bool reachable) {
  const std::lock_guard lock(mutex_);
  isReachable_ = reachable;
}

std::vector<URLRequest> ScriptedService::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<std::string> ScriptedService::lines() const {
  std::vector<std::string> lines;
  for (const URLRequest& request : requests()) lines.push_back(ExpectedRequest::lineOf(request));
  return lines;
}

std::vector<URLRequest> ScriptedService::requests(std::string_view line) const {
  const ExpectedRequest wanted(line, {});
  auto found = requests();
  std::erase_if(found, [&wanted](const URLRequest& sent) { return !wanted.isFor(sent); });
  return found;
}

std::size_t ScriptedService::count(std::string_view request) const {
  return requests(request).size();
}

std::vector<Dictionary> ScriptedService::records(std::string_view request) const {
  std::vector<Dictionary> records;
  for (const URLRequest& sent : requests(request)) {
    if (auto record = ExpectedRequest::recordOf(sent)) records.push_back(*std::move(record));
  }
  return records;
}

void ScriptedService::answerThrough(std::shared_ptr<MainQueue> mainQueue) {
  const std::lock_guard lock(mutex_);
  mainQueue_ = std::move(mainQueue);
}

void ScriptedService::startDataTask(URLRequest request, Completion completion) {
  Reply reply;
  std::shared_ptr<MainQueue> mainQueue;
  {
    const std::lock_guard lock(mutex_);
    if (isClosed_) return;
    reply = replyTo(request);
    requests_.push_back(std::move(request));
    mainQueue = mainQueue_;
  }
  if (reply.problem) report_(*reply.problem);
  if (!reply.answer) return;
  mainQueue->asyncAfter(reply.delay,
                        [completion = std::move(completion), answer = *std::move(reply.answer)] {
                          completion(answer.data, answer.response, answer.error);
                        });
}

ScriptedService::Reply ScriptedService::replyTo(const URLRequest& request) {
  if (!isReachable_) return {.answer = Answer::lostConnection()};
  const auto fits = [&request](const auto& expected) {
    return expected->isFor(request) && expected->differences(request).empty();
  };
  const bool isNext = next_ < expected_.size() && expected_[next_]->isFor(request);
  if (isNext && fits(expected_[next_])) {
    const ExpectedRequest& expected = *expected_[next_++];
    return {.answer = expected.answer(), .delay = expected.delay()};
  }
  // The newest first.
  if (const auto allowed = std::find_if(allowed_.rbegin(), allowed_.rend(), fits);
      allowed != allowed_.rend()) {
    return {.answer = (*allowed)->answer(), .delay = (*allowed)->delay()};
  }
  Reply reply = unexpected(request);
  // One that differs in details alone stands for the expected one, so that a single mistake is a
  // single problem.
  if (isNext) {
    const ExpectedRequest& expected = *expected_[next_++];
    reply.answer = expected.answer();
    reply.delay = expected.delay();
  }
  return reply;
}

ScriptedService::Reply ScriptedService::unexpected(const URLRequest& request) {
  const ExpectedRequest* const next = next_ < expected_.size() ? expected_[next_].get() : nullptr;
  Problem problem{.text =
                      "The app has sent another request than the test case expects.\n"
                      "  expected  " +
                      (next ? described(*next) : "no further request") + "\n  sent      " +
                      described(request),
                  .place = next ? next->place() : SourceLocation()};
  if (next && next->isFor(request)) {
    for (const std::string& difference : next->differences(request)) {
      problem.text += "\n  differs   " + difference;
    }
  }
  problem.text += sentSoFar(requests_.size());
  Reply reply{.answer = Answer::failure("The test case expects another request."),
              .problem = std::move(problem)};
  if (++unexpectedCount_ == kMostUnexpected) {
    reply.problem->text += "\nUnexpected requests get no answer from here on.";
  }
  if (unexpectedCount_ >= kMostUnexpected) reply.answer.reset();
  return reply;
}

std::string ScriptedService::sentSoFar(std::size_t count) const {
  if (count == 0) return "\nNothing else was sent.";
  const std::size_t first = count > kShownBefore ? count - kShownBefore : 0;
  std::string text = "\nSent so far:";
  if (first > 0) text += "\n  (" + std::to_string(first) + " more)";
  for (std::size_t index = first; index < count; ++index) {
    text += "\n  " + std::to_string(index + 1) + ". " + described(requests_[index]);
  }
  return text;
}

void ScriptedService::close() {
  Problem problem;
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isClosed_, true) || next_ == expected_.size()) return;
    problem = {.text = "The app has not sent what the test case expects:",
               .place = expected_[next_]->place()};
    for (std::size_t index = next_; index < expected_.size(); ++index) {
      problem.text += "\n  " + described(*expected_[index]);
    }
    problem.text += sentSoFar(requests_.size());
  }
  report_(problem);
}

}  // namespace ovinta::platform::simulation
