#include "cli/track/SandboxPushes.h"

#include <chrono>
#include <future>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Waiting.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

/// How long a service may take to show that it is a sandbox.
constexpr std::chrono::seconds kPushPatience{2};
/// How soon its answer is noticed, or an interruption.
constexpr std::chrono::milliseconds kAnswerInterval{10};

std::string newPushToken() {
  std::random_device device;
  return "ovinta-" + std::to_string(device()) + std::to_string(device());
}

}  // namespace

std::optional<std::string> SandboxPushes::tryService(const std::string& baseURL) const {
  SandboxClient client(baseURL, token_, kPushPatience);
  const Waiting waiting("Waiting for the sandbox");
  std::packaged_task<void()> question([&client] { client.ask("GET", "clock"); });
  auto answer = question.get_future();
  std::thread thread(std::move(question));
  // The thread that an interruption is noticed on is this one.
  while (answer.wait_for(kAnswerInterval) != std::future_status::ready) {
    if (interruption_.happened()) client.stop();
  }
  thread.join();
  interruption_.check();
  try {
    answer.get();
    return std::nullopt;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

void SandboxPushes::prepare(const ClientOptions& options) {
  token_ = options.token;
  const auto baseURL = UserDefaultsKey::apiBase.stringValue();
  if (!baseURL) return failure_.set("no sandbox is named");
  try {
    if (auto failure = tryService(*baseURL)) return failure_.set(std::move(failure));
  } catch (const std::runtime_error& error) {
    // No address of a sandbox.
    return failure_.set(error.what());
  }
  baseURL_ = *baseURL;
  ownPushToken_ = newPushToken();
  Ovinta::updatePushToken(ownPushToken_);
}

void SandboxPushes::listen() {
  if (baseURL_.empty()) return;
  for (const OrderPtr& order : openOrders()) {
    const std::string pushToken = order->pushToken().value_or(ownPushToken_);
    if (!failure() && !listeners_.contains(pushToken)) listenFor(pushToken);
  }
}

void SandboxPushes::listenFor(const std::string& pushToken) {
  const auto mainQueue = platform::services().mainQueue;
  auto& listener = listeners_[pushToken] = std::make_unique<PushListener>(baseURL_, token_);
  const auto failure =
      listener->listen(pushToken,
                       [this, mainQueue](const platform::Dictionary& payload) {
                         report_.add("push", platform::writeJSON(payload), {{"payload", payload}});
                         mainQueue->async([payload] { Ovinta::handleRemoteNotification(payload); });
                       },
                       {.onEnd = [this](const std::string& reason) { failure_.set(reason); },
                        .givesUp = [this] { return interruption_.happened(); }});
  if (failure) failure_.set(failure);
}

void SandboxPushes::listenAndTell() {
  listen();
  const auto reason = failure();
  if (!reason || std::exchange(hasTold_, true)) return;
  report_.add("pushes", "None come: " + *reason + ".");
}

}  // namespace ovinta::cli
