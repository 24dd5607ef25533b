#include "sandbox/routes/RequestLog.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/JSON.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

constexpr std::size_t kMostRequests = 1000;
constexpr std::size_t kLongestText = 64 * 1024;
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kMask = "********";

bool isWritable(const std::string& text) {
  try {
    platform::writeJSON(text);
    return true;
  } catch (const platform::CodingError&) {
    return false;
  }
}

std::string writable(std::string text) {
  text = cutShort(std::move(text), kLongestText);
  if (!isWritable(text)) {
    std::ranges::replace_if(
        text, [](char byte) { return byte < ' ' || byte > '~'; }, '?');
  }
  return text;
}

/// The position one past the closing quote of the JSON text that begins at the quote.
std::size_t endOfString(std::string_view json, std::size_t quote) {
  std::size_t end = quote + 1;
  while (end < json.size() && json[end] != '"') end += json[end] == '\\' ? 2 : 1;
  return std::min(end + 1, json.size());
}

/// The position one past the JSON value that begins at `at`.
std::size_t endOfValue(std::string_view json, std::size_t at) {
  int depth = 0;
  while (at < json.size()) {
    const char mark = json[at];
    const bool closes = mark == ']' || mark == '}';
    if (depth == 0 && (closes || mark == ',' || kBlanks.find(mark) != std::string_view::npos)) {
      return at;
    }
    if (mark == '[' || mark == '{') ++depth;
    if (closes) --depth;
    at = mark == '"' ? endOfString(json, at) : at + 1;
    if (depth == 0 && (closes || mark == '"')) return at;
  }
  return json.size();
}

/// Whether the text, quotes included, is the key of a password or of its confirmation.
bool isPasswordKey(std::string_view string) {
  const auto value = platform::parseJSON(string);
  const auto* key = value ? value->as<std::string>() : nullptr;
  return key && (*key == "password" || key->ends_with("confirmation"));
}

/// The position at which the value begins of the key that ends at `end`; absent when none follows.
std::optional<std::size_t> valueAfter(std::string_view json, std::size_t end) {
  const std::size_t colon = json.find_first_not_of(kBlanks, end);
  if (colon == std::string_view::npos || json[colon] != ':') return std::nullopt;
  return std::min(json.find_first_not_of(kBlanks, colon + 1), json.size());
}

/// The body with the values of passwords masked, all else as it came. It need not be whole or valid
/// JSON.
std::string masked(std::string_view json) {
  std::string result;
  std::size_t done = 0;
  for (auto quote = json.find('"'); quote < json.size(); quote = json.find('"', quote)) {
    const std::size_t end = endOfString(json, quote);
    const bool isPassword = isPasswordKey(json.substr(quote, end - quote));
    quote = end;
    const auto value = isPassword ? valueAfter(json, end) : std::nullopt;
    if (!value) continue;
    result.append(json.substr(done, *value - done)).append(1, '"').append(kMask).append(1, '"');
    quote = done = endOfValue(json, *value);
  }
  return result.append(json.substr(done));
}

platform::List headerList(const ReceivedRequest& request) {
  platform::List list;
  for (const auto& [name, value] : request.headers) {
    list.emplace_back(platform::Dictionary{{"name", writable(name)}, {"value", writable(value)}});
  }
  return list;
}

platform::Dictionary summary(platform::Dictionary entry) {
  for (const char* key : {"headers", "body", "answer"}) entry.erase(key);
  return entry;
}

}  // namespace

RequestLog::RequestLog(std::function<void(const platform::Dictionary& summary)> onRequest)
    : requests_(kMostRequests, [onRequest = std::move(onRequest)](platform::Dictionary entry) {
        onRequest(summary(std::move(entry)));
      }) {}

void RequestLog::add(const ReceivedRequest& request) {
  requests_.add({{"method", request.method},
                 {"path", writable(request.target)},
                 {"headers", headerList(request)},
                 {"body", writable(masked(std::string_view(request.body).substr(0, kLongestText)))},
                 {"status", request.status},
                 {"time", request.time},
                 {"duration_ms", request.milliseconds},
                 {"answer", writable(request.answerBody)}});
}

platform::List RequestLog::summaries() const {
  platform::List list = requests_.list();
  for (platform::Value& entry : list) entry = summary(*entry.as<platform::Dictionary>());
  return list;
}

}  // namespace ovinta::sandbox
