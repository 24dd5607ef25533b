#include "sandbox/RequestLog.h"

#include <algorithm>
#include <string_view>

#include "platform/JSON.h"

namespace ovinta::sandbox {
namespace {

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
  text.resize(std::min(text.size(), kLongestText));
  if (!isWritable(text)) {
    std::ranges::replace_if(
        text, [](char byte) { return byte < ' ' || byte > '~'; }, '?');
  }
  return text;
}

/// Where the text that begins at the quote ends, one past its closing quote.
std::size_t endOfString(std::string_view json, std::size_t quote) {
  std::size_t end = quote + 1;
  while (end < json.size() && json[end] != '"') end += json[end] == '\\' ? 2 : 1;
  return std::min(end + 1, json.size());
}

/// Whether the text, quotes included, is the key of a password or of its confirmation.
bool isPasswordKey(std::string_view string) {
  return string == "\"password\"" || string.ends_with("confirmation\"");
}

/// The body with the values of passwords masked. It need not be whole or valid JSON.
std::string masked(std::string_view json) {
  std::string result;
  std::size_t begin = 0;
  bool isPassword = false;
  while (begin < json.size()) {
    const std::size_t quote = std::min(json.find('"', begin), json.size());
    const std::string_view between = json.substr(begin, quote - begin);
    result += between;
    if (quote == json.size()) break;
    begin = endOfString(json, quote);
    const std::string_view string = json.substr(quote, begin - quote);
    const std::size_t mark = between.find_first_not_of(kBlanks);
    const bool isValue = mark != std::string_view::npos && between[mark] == ':';
    result += isValue && isPassword ? '"' + std::string(kMask) + '"' : std::string(string);
    isPassword = isPasswordKey(string);
  }
  return result;
}

platform::List headerList(const ReceivedRequest& request) {
  platform::List list;
  for (const auto& [name, value] : request.headers) {
    list.emplace_back(platform::Dictionary{{"name", writable(name)}, {"value", writable(value)}});
  }
  return list;
}

}  // namespace

void RequestLog::add(const ReceivedRequest& request) {
  platform::Dictionary entry = {
      {"method", request.method},       {"path", writable(request.target)},
      {"headers", headerList(request)}, {"body", writable(masked(request.body))},
      {"status", request.status},       {"answer", writable(request.answerBody)}};
  const std::lock_guard lock(mutex_);
  if (requests_.size() == kMostKept) requests_.pop_front();
  requests_.push_back(std::move(entry));
}

platform::List RequestLog::list() const {
  const std::lock_guard lock(mutex_);
  return {requests_.begin(), requests_.end()};
}

void RequestLog::clear() {
  const std::lock_guard lock(mutex_);
  requests_.clear();
}

}  // namespace ovinta::sandbox
