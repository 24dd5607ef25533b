#include "sandbox/faults/FaultKind.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <iterator>

#include "platform/JSON.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;
using Place = FaultKind::Place;
using enum FaultKind::Moment;

/// The length of a body that is too long: just more than the library takes, unless its application
/// says otherwise.
constexpr std::size_t kOversize = (std::size_t{4} << 20) + 1;

Complaint checkStatus(const Value& value) {
  const auto* status = value.as<std::int64_t>();
  const bool sound = status && *status >= 200 && *status <= 599;
  return sound ? std::nullopt : Complaint("must be an integer from 200 to 599");
}

Complaint checkLength(const Value& value) {
  const auto* length = value.as<std::int64_t>();
  return length && *length > 0 ? std::nullopt : Complaint("must be an integer above 0");
}

Complaint checkDelay(const Value& value) {
  const auto seconds = number(value);
  const bool sound = seconds && *seconds >= 0 && *seconds <= 3600;
  return sound ? std::nullopt : Complaint("must be a number from 0 to 3600");
}

Complaint checkContentType(const Value& value) {
  const auto* text = value.as<std::string>();
  const bool sound = text && !text->empty() && std::ranges::none_of(*text, [](unsigned char byte) {
                       return std::iscntrl(byte) != 0;
                     });
  return sound ? std::nullopt : Complaint("must be one line of text and not empty");
}

constexpr std::array<FieldRule, 4> kStatusSettings = {{{"status", checkStatus, true},
                                                       {"body", checkText},
                                                       {"content_type", checkContentType},
                                                       {"retry_after", checkSeconds}}};
constexpr std::array<FieldRule, 1> kDelaySettings = {{{"seconds", checkDelay, true}}};
constexpr std::array<FieldRule, 1> kLengthSettings = {{{"length", checkLength}}};

std::size_t length(const Dictionary& settings, std::size_t otherwise) {
  const auto* length = platform::find<std::int64_t>(settings, "length");
  return length ? static_cast<std::size_t>(*length) : otherwise;
}

/// The same structure with every value of another type; what holds no value becomes something else.
Value mistyped(const Value& value) {
  if (const auto* dictionary = value.as<Dictionary>()) {
    if (dictionary->empty()) return List();
    Dictionary result;
    for (const auto& [key, entry] : *dictionary) result.emplace(key, mistyped(entry));
    return result;
  }
  if (const auto* list = value.as<List>()) {
    if (list->empty()) return Dictionary();
    List result;
    std::ranges::transform(*list, std::back_inserter(result), mistyped);
    return result;
  }
  if (value.as<std::string>()) return 0;
  return value.as<std::nullptr_t>() ? Value(List()) : Value("mistyped");
}

void giveStatus(const Dictionary& settings, const Place&, Answer& answer) {
  answer.status = static_cast<int>(*platform::find<std::int64_t>(settings, "status"));
  if (const auto* body = platform::find<std::string>(settings, "body")) answer.body = *body;
  if (const auto* type = platform::find<std::string>(settings, "content_type")) {
    answer.contentType = *type;
  }
  if (const auto* seconds = platform::find<std::int64_t>(settings, "retry_after")) {
    answer.headers.emplace("Retry-After", std::to_string(*seconds));
  }
}

void emptyBody(const Dictionary&, const Place&, Answer& answer) { answer.body.clear(); }

void malformJSON(const Dictionary&, const Place&, Answer& answer) { answer.body = R"({"data":{)"; }

void mistypeBody(const Dictionary&, const Place&, Answer& answer) {
  const auto body = platform::parseJSON(answer.body);
  if (!body || !body->as<Dictionary>()) return;
  answer.body = platform::writeJSON(mistyped(*body));
}

void cutShort(const Dictionary&, const Place&, Answer& answer) {
  answer.delivery = {.announced = std::max<std::size_t>(answer.body.size(), 1),
                     .sent = answer.body.size() / 2};
}

void resetInBody(const Dictionary& settings, const Place& place, Answer& answer) {
  cutShort(settings, place, answer);
  answer.delivery->end = Delivery::End::reset;
}

void misstateLength(const Dictionary& settings, const Place&, Answer& answer) {
  const std::size_t half = std::max<std::size_t>(answer.body.size() / 2, 1);
  answer.delivery = {.announced = length(settings, half)};
}

void neverAnswer(const Dictionary&, const Place&, Answer& answer) {
  answer = {.status = 0, .delivery = Delivery{.end = Delivery::End::silence}};
}

void reset(const Dictionary&, const Place&, Answer& answer) {
  answer = {.status = 0, .delivery = Delivery{.end = Delivery::End::reset}};
}

// Redirects with the whole origin: a path alone that begins with two slashes would name a host.
void redirectHere(const Dictionary&, const Place& place, Answer& answer) {
  const std::string host =
      place.host.empty() ? "127.0.0.1:" + std::to_string(place.port) : place.host;
  answer = {.status = 307, .headers = {{"Location", "http://" + host + place.target}}};
}

// The same service under another name, so that whoever follows is seen to do so.
void redirectElsewhere(const Dictionary&, const Place& place, Answer& answer) {
  const std::string origin = "http://localhost:" + std::to_string(place.port);
  answer = {.status = 307, .headers = {{"Location", origin + place.target}}};
}

void giveTooMuch(const Dictionary& settings, const Place&, Answer& answer) {
  const std::size_t size = length(settings, kOversize);
  answer.body = std::string(std::size_t{64} << 10, ' ');
  answer.delivery = {.announced = size, .sent = size};
}

void demandUpgrade(const Dictionary&, const Place&, Answer& answer) { answer = upgradeAnswer(); }

void answerGone(const Dictionary&, const Place&, Answer& answer) { answer.status = 410; }

constexpr std::array<FaultKind, 16> kKinds = {{
    {"status", instead, kStatusSettings, giveStatus},
    {"empty_body", after, {}, emptyBody},
    {"cut_short", after, {}, cutShort},
    {"malformed_json", after, {}, malformJSON},
    {"wrong_types", after, {}, mistypeBody},
    {"wrong_content_length", after, kLengthSettings, misstateLength},
    {"delay", before, kDelaySettings, nullptr, true},
    {"never_answers", instead, {}, neverAnswer, true},
    {"reset", instead, {}, reset},
    {"answer_lost", after, {}, reset},
    {"reset_in_body", after, {}, resetInBody, true},
    {"redirect_same_origin", instead, {}, redirectHere},
    {"redirect_other_origin", instead, {}, redirectElsewhere},
    {"oversize_body", instead, kLengthSettings, giveTooMuch, true},
    {"upgrade_required", instead, {}, demandUpgrade},
    {"gone", instead, {}, answerGone},
}};

}  // namespace

std::span<const FaultKind> faultKinds() { return kKinds; }

}  // namespace ovinta::sandbox
