#include "cli/device/PushListener.h"

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ovinta::cli {
namespace {

/// How long the service may take to listen.
constexpr std::chrono::seconds kListenPatience{10};

}  // namespace

PushListener::~PushListener() {
  if (!thread_.joinable()) return;
  client_.stop();
  thread_.join();
}

std::optional<std::string> PushListener::listen(const std::string& pushToken, Push push) {
  auto listening = std::make_shared<std::promise<bool>>();
  auto ready = listening->get_future();
  thread_ = std::thread([this, pushToken, listening, push = std::move(push)] {
    try {
      client_.follow(
          "pushes/" + pushToken, [&listening] { listening->set_value(true); },
          [&push](std::string_view, const platform::Dictionary& payload) { push(payload); });
    } catch (const std::runtime_error&) {
      listening->set_value(false);
    }
  });
  const bool isReady = ready.wait_for(kListenPatience) == std::future_status::ready && ready.get();
  if (isReady) return std::nullopt;
  return "the service does not hand out pushes";
}

}  // namespace ovinta::cli
