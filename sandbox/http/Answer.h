#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/EventStream.h"
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
  /// The events that are sent in place of a body, each as it comes.
  std::shared_ptr<EventStream> events = nullptr;
  /// The place of a request that waits, kept until the answer is through.
  std::shared_ptr<void> place = nullptr;
  /// Raised to end the wait of a client that gets no answer; null for all other answers.
  std::shared_ptr<const WakeSignal> end = nullptr;
  /// How an answer is sent that a fault has spoilt; absent for all others.
  std::optional<Delivery> delivery = {};
  /// Whether an earlier request was answered so and this one, its repetition, was not carried out.
  bool isRepetition = false;
};

/// What an app that is too old is answered.
inline Answer upgradeAnswer() {
  return {.status = 425, .headers = {{"App-Upgrade-URL", "https://example.com/upgrade"}}};
}

/// An answer that holds the whole object.
Answer objectAnswer(const platform::Dictionary& object);

/// An answer that holds {"data": value}.
Answer dataAnswer(platform::Value value);

/// An answer that holds the events as they come, and the place of who waits for them.
Answer streamAnswer(std::shared_ptr<EventStream> events, std::shared_ptr<void> place);

/// An answer that holds the record, or tells the refusal.
Answer answerFor(Outcome outcome);
Answer answerFor(const Refusal& refusal);

/// An answer with that status and one complaint.
Answer errorAnswer(int status, std::string_view field, std::string_view complaint);

/// What a request is answered that would have to wait where no more can.
Answer tooManyWait();

}  // namespace ovinta::sandbox
