#include "cli/device/PushListener.h"

#include <cctype>
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
/// How soon it is noticed that nobody wants to wait for that.
constexpr std::chrono::milliseconds kListenInterval{20};

constexpr const char* kNoPushes = "the service does not hand out pushes";

/// The text as one part of a path.
std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF", kKept = "-._~";
  std::string encoded;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPlain = byte < 0x80 && std::isalnum(byte) != 0;
    if (isPlain || kKept.find(character) != std::string_view::npos) {
      encoded += character;
    } else {
      encoded.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
    }
  }
  return encoded;
}

}  // namespace

PushListener::~PushListener() {
  if (!thread_.joinable()) return;
  client_.stop();
  thread_.join();
}

std::optional<std::string> PushListener::listen(const std::string& pushToken, Push push,
                                                const Watcher& watcher) {
  auto listening = std::make_shared<std::promise<bool>>();
  auto ready = listening->get_future();
  thread_ = std::thread([this, path = "pushes/" + percentEncoded(pushToken), listening,
                         push = std::move(push), onEnd = watcher.onEnd] {
    bool isOpen = false;
    try {
      client_.follow(
          path,
          [&] {
            isOpen = true;
            listening->set_value(true);
          },
          [&push](std::string_view, const platform::Dictionary& payload) { push(payload); });
    } catch (const std::runtime_error& error) {
      if (isOpen && onEnd) onEnd(error.what());
    }
    if (!isOpen) listening->set_value(false);
  });
  const auto end = std::chrono::steady_clock::now() + kListenPatience;
  while (ready.wait_for(kListenInterval) != std::future_status::ready) {
    const bool givesUp = watcher.givesUp && watcher.givesUp();
    if (givesUp || std::chrono::steady_clock::now() > end) return kNoPushes;
  }
  return ready.get() ? std::nullopt : std::optional<std::string>(kNoPushes);
}

}  // namespace ovinta::cli
