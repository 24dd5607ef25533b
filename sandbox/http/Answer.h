#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/PushMailbox.h"
#include "sandbox/domain/Refusal.h"
#include "sandbox/http/Delivery.h"
#include "sandbox/http/WakeSignal.h"

namespace ovinta::sandbox {

struct Answer {
  /// 0 for none: the connection just ends.
  int status = 200;
  std::string contentType = "application/json";
  std::string body = {};
  std::map<std::string, std::string> headers = {};
  /// The pushes that are sent in place of a body, each as it comes.
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

/// An answer that holds the whole object.
Answer objectAnswer(const platform::Dictionary& object);

/// An answer that holds {"data": value}.
Answer dataAnswer(platform::Value value);

/// An answer that holds the record, or tells the refusal.
Answer answerFor(Outcome outcome);
Answer answerFor(const Refusal& refusal);

/// An answer with that status and one complaint.
Answer errorAnswer(int status, std::string_view field, std::string_view complaint);

/// What a request is answered that would have to wait where no more can.
Answer tooManyWait();

}  // namespace ovinta::sandbox
