#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "sandbox/PushMailbox.h"
#include "sandbox/WakeSignal.h"

namespace ovinta::sandbox {

/// How an answer goes over the wire when it does not go as it should.
struct Delivery {
  enum class End { orderly, reset, silence };

  /// The body's length as the head tells it, not 0; the true one when absent.
  std::optional<std::size_t> announced = {};
  /// The bytes to send, of the body repeated as often as it takes; the body once when absent.
  std::optional<std::size_t> sent = {};
  End end = End::orderly;
};

struct Answer {
  /// 0 for none: the connection just ends.
  int status = 200;
  std::string contentType = "application/json";
  std::string body = {};
  std::map<std::string, std::string> headers = {};
  /// In place of a body: the pushes to send as they come.
  std::shared_ptr<PushMailbox::Listener> pushes = nullptr;
  /// Held until the answer is through.
  std::shared_ptr<void> place = nullptr;
  /// Ends the silence of an answer that is none; null for all others.
  std::shared_ptr<const WakeSignal> end = nullptr;
  /// Absent for all answers but spoilt ones.
  std::optional<Delivery> delivery = {};
};

/// What an app that is too old is answered.
inline Answer upgradeAnswer() {
  return {.status = 425, .headers = {{"App-Upgrade-URL", "https://example.com/upgrade"}}};
}

}  // namespace ovinta::sandbox
