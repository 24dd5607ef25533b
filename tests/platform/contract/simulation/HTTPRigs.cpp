// The scripted sessions of the simulation. Those without a thread are driven by one of the rig's.
#include "platform/simulation/http/HoldingURLSession.h"
#include "platform/simulation/time/TimeHoldingURLSession.h"
#include "tests/platform/contract/URLSessionContract.h"
#include "tests/support/PromptURLSession.h"

namespace ovinta::platform::contract {
namespace {

using namespace std::chrono_literals;

struct ScriptedRig : testing::Test {
  static std::string url(std::string_view path) { return "https://service" + std::string(path); }
  void work() {}

  const std::shared_ptr<Service> service_ = std::make_shared<Service>();
  std::function<Answer(const URLRequest&)> answers_ = [service = service_](const auto& request) {
    return service->answer(request);
  };
};

struct AnsweringRig : ScriptedRig {
  std::shared_ptr<URLSession> session_ = std::make_shared<test::PromptURLSession>(answers_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Answering, URLSessionContract, AnsweringRig);

struct HoldingRig : ScriptedRig {
  void work() {
    thread_.run([this] {
      for (; session_->waitingCount() > 0; ++next_) {
        session_->answer(next_, answers_(session_->requests().at(next_)));
      }
    });
  }

  std::shared_ptr<simulation::HoldingURLSession> session_ =
      std::make_shared<simulation::HoldingURLSession>();
  /// The first request without an answer.
  std::size_t next_ = 0;
  test::WorkerThread thread_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Holding, URLSessionContract, HoldingRig);

struct TimeHoldingRig : ScriptedRig {
  /// Comes back when all is answered, or should have been.
  void work() {
    const auto limit = std::chrono::steady_clock::now() + 30s;
    time_.advance(0s, [&] { return std::chrono::steady_clock::now() > limit; });
  }

  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<URLSession> session_ = std::make_shared<simulation::TimeHoldingURLSession>(
      std::make_shared<test::PromptURLSession>(answers_), time_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(TimeHolding, URLSessionContract, TimeHoldingRig);

}  // namespace
}  // namespace ovinta::platform::contract
