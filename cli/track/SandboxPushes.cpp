#include "cli/track/SandboxPushes.h"

#include <chrono>
#include <random>
#include <set>
#include <stdexcept>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

/// How long a service may take to show that it is a sandbox.
constexpr std::chrono::seconds kPushPatience{2};

std::string newPushToken() {
  std::random_device device;
  return "ovinta-" + std::to_string(device()) + std::to_string(device());
}

bool isSandbox(const std::string& baseURL, const std::string& token) {
  try {
    SandboxClient(baseURL, token, kPushPatience).ask("GET", "pushes");
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace

void SandboxPushes::prepare(const ClientOptions& options) {
  const auto baseURL = UserDefaultsKey::apiBase.stringValue();
  if (!baseURL || !isSandbox(*baseURL, options.token)) return;
  baseURL_ = *baseURL;
  token_ = options.token;
  ownPushToken_ = newPushToken();
  Ovinta::updatePushToken(ownPushToken_);
}

void SandboxPushes::listen() {
  if (baseURL_.empty()) return;
  std::set<std::string> pushTokens;
  for (const OrderPtr& order : openOrders()) {
    pushTokens.insert(order->pushToken().value_or(ownPushToken_));
  }
  const auto mainQueue = platform::services().mainQueue;
  for (const std::string& pushToken : pushTokens) {
    auto listener = std::make_unique<PushListener>(baseURL_, token_);
    const auto failure =
        listener->listen(pushToken, [this, mainQueue](const platform::Dictionary& payload) {
          report_.add("push", platform::writeJSON(payload), {{"payload", payload}});
          mainQueue->async([payload] { Ovinta::handleRemoteNotification(payload); });
        });
    if (!failure) listeners_.push_back(std::move(listener));
  }
}

}  // namespace ovinta::cli
