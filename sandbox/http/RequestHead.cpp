#include "sandbox/http/RequestHead.h"

#include <algorithm>
#include <cctype>

#include "platform/JSON.h"
#include "platform/portable/Trimmed.h"
#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {
namespace {

constexpr std::size_t kMostFields = 100;
/// The longest line that the HTTP library takes.
constexpr std::size_t kLongestLine = 8000;
/// The longest path, far beyond any code or push token: routes are matched character by character.
constexpr std::size_t kLongestPath = 2048;

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

/// Whether the byte must not stand in a header field: at some of them the HTTP library would begin
/// another line, or end the field.
bool isNoFieldText(unsigned char byte) { return isControl(byte) && byte != '\t'; }

/// Whether the text is a word of the characters that names of methods and fields are made of.
bool isToken(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](unsigned char byte) {
    return std::isalnum(byte) != 0 ||
           std::string_view("!#$%&'*+-.^_`|~").find(static_cast<char>(byte)) !=
               std::string_view::npos;
  });
}

/// The part before the separator, which goes with it from the text; all when there is none.
std::string_view cut(std::string_view& text, std::string_view separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + separator.size(), text.size()));
  return part;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  const auto digit = [&](std::size_t at) {
    const auto mark = static_cast<unsigned char>(at < text.size() ? text[at] : ' ');
    if (std::isxdigit(mark) == 0) return -1;
    return std::isdigit(mark) != 0 ? mark - '0' : std::tolower(mark) - 'a' + 10;
  };
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isCode = text[at] == '%' && digit(at + 1) >= 0 && digit(at + 2) >= 0;
    decoded += isCode ? static_cast<char>(digit(at + 1) * 16 + digit(at + 2)) : text[at];
    if (isCode) at += 2;
  }
  return decoded;
}

/// Whether the decoded text can stand in an answer, and on one line.
bool isReadable(std::string_view encoded) {
  const std::string text = percentDecoded(encoded);
  if (std::ranges::any_of(text, isControl)) return false;
  try {
    platform::writeJSON(text);
    return true;
  } catch (const platform::CodingError&) {
    return false;
  }
}

std::optional<Answer> readFirstLine(std::string_view line, RequestHead& head) {
  const bool isText = std::ranges::none_of(line, isControl);
  head.method = cut(line, " ");
  head.target = cut(line, " ");
  head.version = line;
  const bool isHTTP = isText && isToken(head.method) && !head.target.empty() &&
                      (head.version == "HTTP/1.0" || head.version == "HTTP/1.1");
  return isHTTP ? std::nullopt : std::optional(notHTTP());
}

std::optional<Answer> readField(std::string_view line, RequestHead& head) {
  if (line.size() > kLongestLine || head.fields.size() == kMostFields) return headTooLong();
  if (line.find(':') == std::string_view::npos || !isToken(line.substr(0, line.find(':')))) {
    return errorAnswer(400, "request", "has a line that is no header field");
  }
  if (std::ranges::any_of(line, isNoFieldText)) {
    return errorAnswer(400, "request", "has a header field with control characters");
  }
  const std::string_view name = cut(line, ":");
  head.fields.emplace_back(name, platform::portable::trimmed(line, " \t"));
  return std::nullopt;
}

}  // namespace

std::vector<std::string_view> RequestHead::values(std::string_view name) const {
  std::vector<std::string_view> found;
  for (const auto& [field, value] : fields) {
    if (isSameIgnoringCase(field, name)) found.emplace_back(value);
  }
  return found;
}

platform::Expected<RequestHead, Answer> readRequestHead(std::string_view text) {
  RequestHead head;
  auto refused = readFirstLine(cut(text, kLineEnd), head);
  while (!refused && !text.empty()) refused = readField(cut(text, kLineEnd), head);
  if (refused) return *std::move(refused);
  return head;
}

std::optional<Answer> refusePath(const RequestHead& head) {
  const std::string_view path = std::string_view(head.target).substr(0, head.target.find('?'));
  if (path.size() > kLongestPath || head.target.size() > kLongestLine) {
    return errorAnswer(414, "path", "is too long");
  }
  if (!isReadable(path))
    return errorAnswer(400, "path", "must be UTF-8 without control characters");
  return std::nullopt;
}

bool isSameIgnoringCase(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, [](unsigned char left, unsigned char right) {
    return std::tolower(left) == std::tolower(right);
  });
}

Answer notHTTP() { return errorAnswer(400, "request", "is no HTTP"); }

Answer headTooLong() {
  return errorAnswer(431, "request",
                     "has a head of more than 32 KiB, 100 fields or 8000 bytes a line");
}

bool isTesters(std::string_view path) {
  // The root leads to the console.
  return path == "/" || path == "/sandbox" || path.starts_with("/sandbox/");
}

}  // namespace ovinta::sandbox
