#include "sandbox/http/Answer.h"

#include <utility>

#include "platform/JSON.h"
#include "sandbox/domain/Envelope.h"
#include "sandbox/domain/Validation.h"

namespace ovinta::sandbox {
namespace {

int statusOf(Refusal::Kind kind) {
  switch (kind) {
    case Refusal::Kind::invalid:
      return 422;
    case Refusal::Kind::unauthorized:
      return 401;
    case Refusal::Kind::unknown:
      return 404;
    case Refusal::Kind::gone:
      return 410;
    case Refusal::Kind::impossible:
      return 409;
  }
  return 500;
}

}  // namespace

Answer objectAnswer(const platform::Dictionary& object) {
  return {.body = platform::writeJSON(object)};
}

Answer dataAnswer(platform::Value value) { return {.body = enveloped("data", std::move(value))}; }

Answer streamAnswer(std::shared_ptr<EventStream> events, std::shared_ptr<void> place) {
  return {.contentType = "text/event-stream",
          .headers = {{"Cache-Control", "no-store"}},
          .events = std::move(events),
          .place = std::move(place)};
}

Answer answerFor(Outcome outcome) {
  return outcome ? dataAnswer(*std::move(outcome)) : answerFor(outcome.error());
}

Answer answerFor(const Refusal& refusal) {
  Answer answer{.status = statusOf(refusal.kind)};
  if (!refusal.errors.empty()) answer.body = enveloped("errors", refusal.errors);
  return answer;
}

Answer errorAnswer(int status, std::string_view field, std::string_view complaint) {
  return {.status = status, .body = enveloped("errors", invalid(field, complaint).errors)};
}

Answer tooManyWait() {
  return errorAnswer(503, "requests", "that wait are too many, streams included");
}

}  // namespace ovinta::sandbox
