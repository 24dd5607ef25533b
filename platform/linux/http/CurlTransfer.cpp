#include "platform/linux/http/CurlTransfer.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/JSON.h"
#include "platform/linux/http/CurlErrors.h"
#include "platform/linux/http/CurlHeaders.h"
#include "platform/linux/http/HTTPRedirect.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr int kMaximumRedirects = 10;

// The most bytes that the heads and trailers of one answer may have: several times what servers
// send, and little enough for fields of a few bytes each, which take many times their size.
constexpr std::size_t kMaximumHeadSize = std::size_t{64} << 10;

// The most memory that is set aside for a body of which nothing has come but its length: many
// answers may announce a large one at once.
constexpr std::size_t kLargestReserve = std::size_t{4} << 20;

// What a callback returns to have libcurl end the transfer: not the length that it was given.
constexpr std::size_t kStop = CURL_WRITEFUNC_ERROR;

// The longest time-out that counts, which keeps sums with an instant, and libcurl's counts of
// milliseconds, from overflowing.
constexpr std::chrono::milliseconds kLongestTimeout = std::chrono::hours(24);

/// What a callback that takes the bytes returns. Nothing may be thrown through libcurl.
template <class Take>
std::size_t taken(std::size_t length, const Take& take) {
  try {
    take();
    return length;
  } catch (const std::exception&) {
    return kStop;
  }
}

long statusCodeOf(CURL* handle) {
  long statusCode = 0;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &statusCode);
  return statusCode;
}

}  // namespace

CurlTransfer::CurlTransfer(URLRequest request, URLSession::Completion completion)
    : request_(std::move(request)),
      completion_(std::move(completion)),
      timeout_(std::clamp(request_.timeout, std::chrono::milliseconds(1), kLongestTimeout)) {}

CurlEasy CurlTransfer::leaveHandle() {
  if (handle_) {
    CurlOptions curl(handle_.get());
    curl.set(CURLOPT_VERBOSE, 0L);
    curl.set(CURLOPT_URL, nullptr);
    curl.set(CURLOPT_POSTFIELDS, nullptr);
    curl.set(CURLOPT_HTTPHEADER, nullptr);
    if (curl.refusal() != CURLE_OK) handle_ = nullptr;
  }
  sentHeaders_ = nullptr;
  return std::move(handle_);
}

CURLcode CurlTransfer::begin(const Options& options, Instant now) {
  lastProgress_ = now;
  if (!end_) end_ = now + std::min(options.timeLimit, kLongestTimeout);
  sizeLimit_ = options.sizeLimit;
  progressedOnes_ = options.progressed;
  body_.clear();
  receivedHeaders_.clear();
  headSize_ = 0;
  sent_ = 0;
  progressed_ = connected_ = headComplete_ = false;
  if (!isWebURL(request_.url.text)) return CURLE_URL_MALFORMAT;
  if (!isSendable(request_)) return CURLE_BAD_FUNCTION_ARGUMENT;
  const bool isFresh = !handle_;
  if (isFresh) handle_.reset(curl_easy_init());
  if (!handle_) return CURLE_OUT_OF_MEMORY;
  CurlOptions curl(handle_.get());
  if (isFresh) {
    setUpConnections(curl, options);
    setUpCallbacks(curl);
  }
  setUpRequest(curl);
  // One that is half set up serves nobody else.
  if (curl.refusal() != CURLE_OK) handle_ = nullptr;
  return curl.refusal();
}

void CurlTransfer::setUpConnections(CurlOptions& curl, const Options& options) {
  curl.set(CURLOPT_NOSIGNAL, 1L);
  // A look-up of a name that takes long must not hold up the session's thread when it is given up.
  curl.set(CURLOPT_QUICK_EXIT, 1L);
  curl.set(CURLOPT_PROTOCOLS_STR, "http,https");
  curl.set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_2TLS});
  curl.set(CURLOPT_TCP_KEEPALIVE, 1L);
  curl.set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
  curl.set(CURLOPT_SSL_VERIFYPEER, 1L);
  curl.set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!options.caFile.empty()) {
    curl.set(CURLOPT_CAINFO, options.caFile.c_str());
    curl.set(CURLOPT_CAPATH, nullptr);
  }
  curl.set(CURLOPT_SHARE, options.share);
  // Redirects are followed and counted here, not by libcurl.
  curl.set(CURLOPT_FOLLOWLOCATION, 0L);
  // HTTP 0.9 is refused, in which anything at all would be an answer.
  curl.set(CURLOPT_HTTP09_ALLOWED, 0L);
  curl.set(CURLOPT_NETRC, long{CURL_NETRC_IGNORED});
  curl.set(CURLOPT_PATH_AS_IS, 1L);
  curl.set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
}

void CurlTransfer::setUpCallbacks(CurlOptions& curl) {
  curl.set(CURLOPT_HEADERFUNCTION, &receiveHeaderLine);
  curl.set(CURLOPT_WRITEFUNCTION, &receiveBody);
  curl.set(CURLOPT_NOPROGRESS, 0L);
  curl.set(CURLOPT_XFERINFOFUNCTION, &seeCounters);
  curl.set(CURLOPT_PREREQFUNCTION, &seeConnection);
  // The debug function is the one view that libcurl gives of the bytes between the parts of a body.
  curl.set(CURLOPT_DEBUGFUNCTION, &seeBytes);
}

/// Sets all that differs from request to request, whatever the request before had it be.
void CurlTransfer::setUpRequest(CurlOptions& curl) {
  for (const CURLoption data : {CURLOPT_HEADERDATA, CURLOPT_WRITEDATA, CURLOPT_XFERINFODATA,
                                CURLOPT_PREREQDATA, CURLOPT_DEBUGDATA}) {
    curl.set(data, this);
  }
  curl.set(CURLOPT_VERBOSE, 1L);
  curl.set(CURLOPT_FORBID_REUSE, 0L);
  // With a limit of its own for connecting, libcurl tries a host's next address before the whole
  // time is spent on the first one.
  curl.set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout_.count()));
  curl.set(CURLOPT_URL, request_.url.text.c_str());
  // The first takes back what another method has left behind.
  curl.set(CURLOPT_HTTPGET, 1L);
  const bool hasNoBody = request_.method == "HEAD";
  if (const auto body = bodyToSend(request_)) {
    curl.set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body->size()));
    curl.set(CURLOPT_POSTFIELDS, body->data());
  } else if (hasNoBody) {
    curl.set(CURLOPT_NOBODY, 1L);
  }
  // This limit goes by the length that the head announces; `receiveBody` and `seeBytes` see the
  // rest. The length that the answer to HEAD announces is that of a body that does not come.
  constexpr std::size_t kLargest = std::numeric_limits<curl_off_t>::max();
  curl.set(CURLOPT_MAXFILESIZE_LARGE,
           hasNoBody ? curl_off_t{0} : static_cast<curl_off_t>(std::min(sizeLimit_, kLargest)));
  curl.set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
  sentHeaders_ = headerList(request_);
  curl.set(CURLOPT_HTTPHEADER, sentHeaders_.get());
}

void CurlTransfer::noteProgress(Instant now) {
  if (std::exchange(progressed_, false)) lastProgress_ = now;
}

void CurlTransfer::markProgress() {
  if (!std::exchange(progressed_, true) && progressedOnes_) progressedOnes_->push_back(this);
}

void CurlTransfer::giveUpConnection() {
  // Where the option cannot be set, the next request finds out for itself that the connection is
  // dead.
  CurlOptions(handle_.get()).set(CURLOPT_FORBID_REUSE, 1L);
}

bool CurlTransfer::followsRedirect(CURLcode code) {
  const char* target = nullptr;
  if (judged(code) != CURLE_OK) return false;
  curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &target);
  if (!target) return false;
  auto next = redirected(request_, static_cast<int>(statusCodeOf(handle_.get())), target);
  if (!next) return false;
  tooManyRedirects_ = redirects_ == kMaximumRedirects;
  if (tooManyRedirects_) return false;
  ++redirects_;
  request_ = *std::move(next);
  return true;
}

void CurlTransfer::complete(CURLcode code) {
  const CURLcode result = judged(code);
  std::optional<HTTPResponse> answer;
  if (headComplete_) {
    answer =
        HTTPResponse{static_cast<int>(statusCodeOf(handle_.get())), std::move(receivedHeaders_)};
  }
  const auto completion = std::exchange(completion_, nullptr);
  if (!completion) return;
  if (result == CURLE_OK) {
    completion(std::move(body_), std::move(answer), std::nullopt);
  } else {
    completion(std::nullopt, std::move(answer),
               transportError(result, connected_ || redirects_ > 0));
  }
}

// libcurl uses some codes for several causes.
CURLcode CurlTransfer::judged(CURLcode code) const {
  if (tooLarge_) return CURLE_FILESIZE_EXCEEDED;
  if (tooManyRedirects_) return CURLE_TOO_MANY_REDIRECTS;
  const bool ambiguous = code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_BAD_FUNCTION_ARGUMENT;
  if (ambiguous && connected_) return CURLE_WEIRD_SERVER_REPLY;
  if (code == CURLE_OK && !headComplete_) return CURLE_GOT_NOTHING;
  return code;
}

int CurlTransfer::seeBytes(CURL*, curl_infotype type, char*, std::size_t size, void* transfer) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  if (type != CURLINFO_HEADER_IN && type != CURLINFO_DATA_IN) return 0;
  self.markProgress();
  self.receivedSize_ += size;
  self.tooLarge_ |= self.receivedSize_ > self.sizeLimit_;
  return 0;
}

std::size_t CurlTransfer::receiveHeaderLine(char* data, std::size_t size, std::size_t count,
                                            void* transfer) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  const std::string_view line(data, size * count);
  self.headSize_ += line.size();
  self.tooLarge_ |= self.headSize_ > kMaximumHeadSize;
  if (self.tooLarge_) return kStop;
  // What follows the body is no part of the head; heads of interim answers (1xx) do not count.
  if (self.headComplete_) return line.size();
  return taken(line.size(), [&] {
    if (line.starts_with("HTTP/")) {
      self.receivedHeaders_.clear();
    } else if (line == "\r\n" || line == "\n") {
      self.headComplete_ = statusCodeOf(self.handle_.get()) >= 200;
    } else {
      addHeaderLine(self.receivedHeaders_, line);
    }
  });
}

std::size_t CurlTransfer::receiveBody(char* data, std::size_t size, std::size_t count,
                                      void* transfer) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  const std::size_t length = size * count;
  // The body is measured too, because a transfer coding may have made it larger than what came.
  self.tooLarge_ |= length > self.sizeLimit_ - self.body_.size();
  if (self.tooLarge_) return kStop;
  return taken(length, [&] {
    if (self.body_.capacity() - self.body_.size() < length) self.reserveBody();
    self.body_.append(data, length);
  });
}

/// Makes room for the body that the head announces, so that it is hardly copied while it grows, nor
/// when it is parsed in its place. Of a large one that is the beginning at first.
void CurlTransfer::reserveBody() {
  curl_off_t announced = -1;
  curl_easy_getinfo(handle_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
  if (announced < 0) return;
  std::size_t length = std::min(static_cast<std::size_t>(announced), sizeLimit_);
  if (body_.empty()) length = std::min(length, kLargestReserve);
  body_.reserve(length + JSONDocument::kRoom);
}

int CurlTransfer::seeCounters(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t up) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  if (std::exchange(self.sent_, up) != up) self.markProgress();
  // Any result but 0 ends the transfer.
  return self.tooLarge_ ? 1 : 0;
}

int CurlTransfer::seeConnection(void* transfer, char*, char*, int, int) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  self.connected_ = true;
  self.markProgress();
  return CURL_PREREQFUNC_OK;
}

}  // namespace ovinta::platform::linuxos
