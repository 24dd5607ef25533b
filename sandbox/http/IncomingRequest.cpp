#include "sandbox/http/IncomingRequest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "sandbox/http/Answer.h"
#include "sandbox/http/ForeignRequests.h"
#include "sandbox/http/RequestBody.h"

namespace ovinta::sandbox {
namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr std::size_t kLongestHead = std::size_t{32} << 10;
/// The longest line that tells a chunk's size, its extensions included.
constexpr std::size_t kLongestSizeLine = 256;

/// The body is received before it is looked at, without its chunks, and an answer is given as a
/// whole: a list of overlapping ranges would make it as large as one likes.
constexpr std::array<std::string_view, 3> kDropped = {"Expect", "Range", "Transfer-Encoding"};

Answer noBody(std::string_view complaint) { return errorAnswer(400, "body", complaint); }

Answer tooLong(std::size_t limit) {
  return errorAnswer(413, "body", "is longer than " + std::to_string(limit) + " bytes");
}

/// The number that the whole text is, to that base; absent for any other text. Too large a number
/// is the largest.
std::optional<std::size_t> number(std::string_view text, int base) {
  std::size_t value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (read.ptr != text.data() + text.size() || text.empty()) return std::nullopt;
  if (read.ec == std::errc::result_out_of_range) return std::string::npos;
  return value;
}

std::string forwardedHead(const RequestHead& head) {
  std::string text = head.method + " " + head.target + " " + head.version;
  text += kLineEnd;
  for (const auto& [name, value] : head.fields) {
    // clang 14 captures no part of a structured binding by itself.
    const auto isThis = [&name = name](std::string_view dropped) {
      return isSameIgnoringCase(dropped, name);
    };
    if (std::ranges::any_of(kDropped, isThis)) continue;
    text.append(name).append(": ").append(value).append(kLineEnd);
  }
  return text.append(kLineEnd);
}

/// Whether one of the lines, from there on, ends with a line feed alone.
bool hasBareFeed(std::string_view text, std::size_t from) {
  std::size_t feed = text.find('\n', from);
  while (feed != std::string_view::npos && feed > 0 && text[feed - 1] == '\r') {
    feed = text.find('\n', feed + 1);
  }
  return feed != std::string_view::npos;
}

}  // namespace

IncomingRequest::State IncomingRequest::take(std::string_view bytes) {
  if (text_.empty()) {
    bytes.remove_prefix(std::min(bytes.find_first_not_of(kLineEnd), bytes.size()));
    if (bytes.empty()) return state_;
  }
  // The end of the head may begin in the piece before.
  const std::size_t from = text_.size() - std::min(text_.size(), kHeadEnd.size() - 1);
  text_ += bytes;
  if (state_ == State::head) {
    const std::size_t end = text_.find(kHeadEnd, from);
    if (std::min(end, text_.size()) > kLongestHead) {
      refuse(headTooLong());
    } else if (hasBareFeed(std::string_view(text_).substr(0, end), from)) {
      refuse(errorAnswer(400, "request", "has a line that does not end with CR and LF"));
    } else if (end != std::string::npos) {
      takeHead(end);
    } else if (text_.front() < 'A' || text_.front() > 'z') {
      refuse(notHTTP());
    }
  }
  if (state_ == State::body) takeBody();
  return state_;
}

void IncomingRequest::refuse(Answer answer) {
  refusal_ = std::move(answer);
  state_ = State::refused;
  text_ = {};
}

bool IncomingRequest::takeWishToContinue() { return std::exchange(wantsContinue_, false); }

bool IncomingRequest::allowsNext() const {
  const auto isToKeep = [](std::string_view wish) {
    return isSameIgnoringCase(wish, "keep-alive");
  };
  return state_ == State::whole && !hasMore_ && head_.version == "HTTP/1.1" &&
         !head_.values("Host").empty() && std::ranges::all_of(head_.values("Connection"), isToKeep);
}

void IncomingRequest::takeHead(std::size_t end) {
  auto read = readRequestHead(std::string_view(text_).substr(0, end));
  if (!read) return refuse(std::move(read).error());
  head_ = *std::move(read);
  if (auto refused = refuseForeign(head_, isPublic_)) return refuse(*std::move(refused));
  if (auto refused = refusePath(head_)) return refuse(*std::move(refused));
  const std::string head = forwardedHead(head_);
  text_.replace(0, end + kHeadEnd.size(), head);
  body_ = head.size();
  next_ = body_;
  state_ = State::body;
  readFraming();
}

void IncomingRequest::readFraming() {
  const auto lengths = head_.values("Content-Length");
  const auto codings = head_.values("Transfer-Encoding");
  limit_ = longestBody(head_.target);
  if (!codings.empty()) {
    const bool isClear =
        lengths.empty() && codings.size() == 1 && isSameIgnoringCase(codings.front(), "chunked");
    if (!isClear) return refuse(noBody("must come with its length, or else in chunks"));
    framing_ = Framing::chunks;
  } else if (!lengths.empty()) {
    const auto length = lengths.size() == 1 ? number(lengths.front(), 10) : std::nullopt;
    if (!length) {
      return refuse(errorAnswer(400, "content_length", "must be one number of bytes"));
    }
    if (*length > limit_) return refuse(tooLong(limit_));
    content_ = *length;
  }
  const auto expected = head_.values("Expect");
  wantsContinue_ = !expected.empty() && isSameIgnoringCase(expected.front(), "100-continue");
}

void IncomingRequest::takeBody() {
  if (framing_ == Framing::length) {
    if (text_.size() - body_ >= content_) end();
    return;
  }
  while (state_ == State::body && followChunk()) {
  }
  if (state_ != State::body) return;
  const std::size_t kept = body_ + content_;
  text_.erase(kept, next_ - kept);
  next_ = kept;
}

bool IncomingRequest::followChunk() {
  const std::string_view rest = std::string_view(text_).substr(next_);
  const std::string_view line = rest.substr(0, std::min(rest.find(kLineEnd), kLongestSizeLine));
  const bool isWholeLine = line.size() < kLongestSizeLine && line.size() < rest.size();
  if (!isWholeLine) {
    if (line.size() == kLongestSizeLine) refuse(noBody("is not in chunks"));
    return false;
  }
  const auto size = number(line.substr(0, line.find_first_of("; \t")), 16);
  if (!size) {
    refuse(noBody("is not in chunks"));
    return false;
  }
  if (*size > limit_ - content_) {
    refuse(tooLong(limit_));
    return false;
  }
  // After the last chunk could come trailers; without them it is closed as any other.
  const std::size_t length = line.size() + kLineEnd.size() + *size;
  if (rest.size() < length + kLineEnd.size()) return false;
  if (rest.substr(length, kLineEnd.size()) != kLineEnd) {
    refuse(noBody(*size == 0 ? "must end without trailers" : "is not in chunks"));
    return false;
  }
  // What frames the contents may be many times as long as they are.
  const auto contents = rest.substr(length - *size, *size);
  std::copy(contents.begin(), contents.end(), text_.data() + body_ + content_);
  content_ += *size;
  next_ += length + kLineEnd.size();
  if (*size == 0) end();
  return *size != 0;
}

void IncomingRequest::end() {
  const std::size_t wholeSize = framing_ == Framing::chunks ? next_ : body_ + content_;
  hasMore_ = text_.find_first_not_of(kLineEnd, wholeSize) != std::string::npos;
  text_.resize(body_ + content_);
  if (framing_ == Framing::chunks) {
    std::string length = "Content-Length: " + std::to_string(content_);
    text_.insert(body_ - kLineEnd.size(), length.append(kLineEnd));
  }
  state_ = State::whole;
}

}  // namespace ovinta::sandbox
