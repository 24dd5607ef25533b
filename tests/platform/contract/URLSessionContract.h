#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <future>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/URLSession.h"
#include "platform/simulation/http/Answer.h"

namespace ovinta::platform::contract {

using simulation::Answer;

/// A service whose answers the test decides. May be used from any thread.
class Service {
 public:
  using Answers = std::function<Answer(const URLRequest&)>;

  /// An answer without data breaks off: after its head, or before it where there is none either.
  void setAnswers(Answers answers) {
    const std::lock_guard lock(mutex_);
    answers_ = std::move(answers);
  }
  Answer answer(const URLRequest& request) {
    std::unique_lock lock(mutex_);
    const auto answers = answers_;
    lock.unlock();
    return answers(request);
  }

 private:
  std::mutex mutex_;
  Answers answers_;
};

/// Tells threads apart, also one that takes the place of another that has ended.
inline int threadNumber() {
  static std::atomic<int> threads = 0;
  thread_local const int number = ++threads;
  return number;
}

/// What every URL session promises. A rig is a fixture with pointers to a `session_` and to the
/// `service_` that it speaks to; `url(path)` of the service; and `work()`, which has what was
/// started go on where it does not by itself, and may return before it has ended.
template <class Rig>
class URLSessionContract : public Rig {
 protected:
  struct Ending {
    std::string url;
    Answer answer;
    int thread;
  };

  void start(URLRequest request) {
    this->session_->startDataTask(
        request, [this, url = request.url.text](auto data, auto response, auto error) {
          const std::lock_guard lock(mutex_);
          endings_.push_back(
              {url, {std::move(data), std::move(response), std::move(error)}, threadNumber()});
          told_.notify_one();
        });
  }
  void get(const std::string& path) { start({.url = {this->url(path)}}); }

  /// How requests ended since the last call, once so many have.
  std::vector<Ending> await(std::size_t count) {
    this->work();
    std::unique_lock lock(mutex_);
    const bool isTold =
        told_.wait_for(lock, std::chrono::seconds(30), [&] { return endings_.size() >= count; });
    if (!isTold) throw std::runtime_error("Nobody was told");
    return std::exchange(endings_, {});
  }

  std::mutex mutex_;
  std::condition_variable told_;
  std::vector<Ending> endings_;
};
TYPED_TEST_SUITE_P(URLSessionContract);

TYPED_TEST_P(URLSessionContract, CarriesTheRequestThereAndTheAnswerBack) {
  const std::string bytes("\0\r\n\xff{}", 6);
  const std::vector<HeaderField> sent{{"X-Two", "2"}, {"Accept", "a/b"}, {"X-One", "\"1\""}};
  const std::vector<HeaderField> answered{{"x-B", "2"}, {"X-A", "two words"}, {"x-B", "3"}};
  const std::tuple<const char*, std::optional<std::string>, int, std::string> cases[] = {
      {"GET", {}, 200, bytes}, {"POST", bytes, 404, "none"}, {"DELETE", {}, 204, ""}};
  for (const auto& [method, body, statusCode, data] : cases) {
    SCOPED_TRACE(method);
    URLRequest request{{this->url("/m/v1/a?q=%20b")}, method, sent, body};
    std::promise<URLRequest> received;
    this->service_->setAnswers(
        [&, answer = Answer{data, HTTPResponse{statusCode, answered}, {}}](const URLRequest& came) {
          received.set_value(came);
          return answer;
        });
    this->start(request);
    auto [answerData, response, error] = this->await(1).at(0).answer;
    auto coming = received.get_future();
    ASSERT_EQ(coming.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    const auto came = coming.get();
    EXPECT_EQ(answerData, data);
    EXPECT_EQ(response.value().statusCode, statusCode);
    EXPECT_EQ(response->header("X-b"), "2");
    std::erase_if(response->headers, [](const auto& field) { return field.name[1] != '-'; });
    EXPECT_EQ(response->headers, answered);
    EXPECT_FALSE(error);

    EXPECT_EQ(came.url, request.url);
    EXPECT_EQ(came.method, method);
    EXPECT_EQ(came.body.value_or(""), body.value_or(""));
    ASSERT_GE(came.headers.size(), sent.size());
    EXPECT_TRUE(std::equal(sent.rbegin(), sent.rend(), came.headers.rbegin()));
  }
}

TYPED_TEST_P(URLSessionContract, CompletesEachRequestOnceOnOneThreadThatIsNotTheMainOne) {
  constexpr int kThreads = 4, kRequests = 10;
  this->service_->setAnswers(
      [](const auto& request) { return Answer::json(200, request.url.text); });
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < kRequests; ++i) this->get("/" + std::to_string(thread * kRequests + i));
    });
  }
  threads.clear();
  auto endings = this->await(kThreads * kRequests);
  // What is told a second time is told before this.
  this->get("/last");
  for (auto& ending : this->await(1)) endings.push_back(std::move(ending));
  std::set<std::string> urls;
  for (const auto& [url, answer, thread] : endings) {
    urls.insert(url);
    EXPECT_EQ(answer.data, url);
    EXPECT_EQ(thread, endings[0].thread);
    EXPECT_NE(thread, threadNumber());
  }
  EXPECT_EQ(urls.size(), kThreads * kRequests + 1U);
  EXPECT_EQ(endings.size(), urls.size());
}

TYPED_TEST_P(URLSessionContract, ACompletionMayStartRequestsAndNeverRunsInsideTheCall) {
  this->service_->setAnswers([](const auto&) { return Answer::json(200, "{}"); });
  bool isStarting = false;  // For the callback thread alone.
  std::function<void(int)> next = [&](int count) {
    if (count == 5) return this->get("/last");
    isStarting = true;
    this->session_->startDataTask({.url = {this->url("/")}}, [&, count](auto, auto, auto) {
      EXPECT_FALSE(isStarting);
      next(count + 1);
    });
    isStarting = false;
  };
  this->session_->startDataTask({.url = {this->url("/")}}, [&](auto, auto, auto) { next(0); });
  this->await(1);
}

TYPED_TEST_P(URLSessionContract, AFailureHasAnErrorAndTheHeadThatCameButNoData) {
  const TransportError failure{"broken off"};
  this->service_->setAnswers([&](const URLRequest& request) {
    if (request.url.text == this->url("/secret")) return Answer{{}, {}, failure};
    return Answer{{}, HTTPResponse{201, {{"X-A", "b"}}}, failure};
  });
  for (const std::string path : {"/secret", "/head", "/secret"}) {
    this->get(path);
    const auto endings = this->await(1);
    ASSERT_EQ(endings.size(), 1U) << path;
    EXPECT_EQ(endings[0].url, this->url(path)) << "the one before has ended once";
    const auto& [data, response, error] = endings[0].answer;
    EXPECT_THAT(error.value().localizedDescription,
                testing::AllOf(testing::Not(""), testing::Not(testing::HasSubstr("secret"))));
    EXPECT_FALSE(data);
    EXPECT_EQ(response ? response->header("X-A") : "", path == "/head" ? "b" : "");
  }
}

REGISTER_TYPED_TEST_SUITE_P(URLSessionContract, CarriesTheRequestThereAndTheAnswerBack,
                            CompletesEachRequestOnceOnOneThreadThatIsNotTheMainOne,
                            ACompletionMayStartRequestsAndNeverRunsInsideTheCall,
                            AFailureHasAnErrorAndTheHeadThatCameButNoData);

}  // namespace ovinta::platform::contract
