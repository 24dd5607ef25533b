#include "platform/linux/http/CurlHeaders.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <new>

#include "platform/portable/Trimmed.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr std::string_view kTokenCharacters =
    "!#$%&'*+-.^_`|~0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kBlanks = " \t";

bool endsLine(char c) { return c == '\r' || c == '\n' || c == '\0'; }

/// The value of an answer's field: without the blanks around it, and with a blank for what would
/// end its line wherever it is sent on.
std::string fieldValue(std::string_view text) {
  std::string value(portable::trimmed(text));
  std::ranges::replace_if(value, endsLine, ' ');
  return value;
}

/// Whether each character, by its code, may stand in a token.
constexpr auto kIsInTokens = [] {
  std::array<bool, 256> isInTokens{};
  for (const unsigned char c : kTokenCharacters) isInTokens[c] = true;
  return isInTokens;
}();

bool isToken(std::string_view text) {
  const auto isInTokens = [](unsigned char c) { return kIsInTokens[c]; };
  return !text.empty() && std::ranges::all_of(text, isInTokens);
}

bool named(const HeaderField& field, const char* name) {
  return strcasecmp(field.name.c_str(), name) == 0;
}

// Whether the field would say how long the body is. That is left to libcurl: a length that differs
// from the body's would split the stream elsewhere.
bool framesBody(const HeaderField& field) {
  return named(field, "Content-Length") || named(field, "Transfer-Encoding");
}

std::string lineFor(const HeaderField& field) {
  const auto value = portable::trimmed(field.value);
  std::string line;
  line.reserve(field.name.size() + value.size() + 2);
  line += field.name;
  // The semicolon is libcurl's form for a field without a value; "Name:" would take the field away.
  return value.empty() ? line += ";" : line.append(": ").append(value);
}

void append(CurlList& list, const std::string& line) {
  curl_slist* longer = curl_slist_append(list.get(), line.c_str());
  if (!longer) throw std::bad_alloc();
  (void)list.release();
  list.reset(longer);
}

}  // namespace

bool isSendable(const URLRequest& request) {
  return isToken(request.method) &&
         std::ranges::all_of(request.headers, [](const HeaderField& field) {
           return isToken(field.name) && std::ranges::none_of(field.value, endsLine);
         });
}

CurlList headerList(const URLRequest& request) {
  CurlList list;
  // libcurl keeps no cache itself; the fields are for the caches on the way.
  if (request.cachePolicy == CachePolicy::reloadIgnoringLocalAndRemoteCacheData) {
    append(list, "Cache-Control: no-cache");
  }
  if (const auto body = bodyToSend(request)) {
    append(list, "Content-Length: " + std::to_string(body->size()));
  }
  for (const auto& field : request.headers) {
    if (!framesBody(field)) append(list, lineFor(field));
  }
  for (const char* added : {"Accept", "Content-Type", "Expect"}) {
    const auto isAdded = [&](const HeaderField& field) { return named(field, added); };
    if (std::ranges::none_of(request.headers, isAdded)) append(list, std::string(added) + ":");
  }
  return list;
}

std::optional<std::string_view> bodyToSend(const URLRequest& request) {
  constexpr std::array kSendingMethods{"POST", "PUT", "PATCH"};
  if (request.method == "HEAD") return std::nullopt;
  if (request.body) return *request.body;
  if (std::ranges::find(kSendingMethods, request.method) != kSendingMethods.end()) return "";
  return std::nullopt;
}

void addHeaderLine(std::vector<HeaderField>& headers, std::string_view line) {
  if (kBlanks.find(line.front()) != std::string_view::npos) {
    if (!headers.empty()) headers.back().value.append(" ").append(fieldValue(line));
    return;
  }
  const auto colon = line.find(':');
  if (colon == 0 || colon == std::string_view::npos) return;
  headers.push_back({std::string(line.substr(0, colon)), fieldValue(line.substr(colon + 1))});
}

}  // namespace ovinta::platform::linuxos
