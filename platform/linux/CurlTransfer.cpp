#include "platform/linux/CurlTransfer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/linux/CurlErrors.h"
#include "platform/linux/CurlHeaders.h"
#include "platform/linux/HTTPRedirect.h"

namespace ovinta::platform::linux {
namespace {

constexpr int kMaximumRedirects = 10;

// Keeps sums with an instant, and libcurl's counts of milliseconds, from overflowing.
constexpr std::chrono::milliseconds kLongestTimeout = std::chrono::hours(24);

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

CURLcode CurlTransfer::begin(const Setting& setting, Instant now) {
  lastProgress_ = now;
  maximumBodySize_ = setting.maximumBodySize;
  body_.clear();
  receivedHeaders_.clear();
  sent_ = 0;
  progressed_ = connected_ = headComplete_ = false;
  if (!isWebURL(request_.url.text)) return CURLE_URL_MALFORMAT;
  if (!isSendable(request_)) return CURLE_BAD_FUNCTION_ARGUMENT;
  if (handle_) {
    curl_easy_reset(handle_.get());
  } else {
    handle_.reset(curl_easy_init());
  }
  if (!handle_) return CURLE_OUT_OF_MEMORY;
  setUpConnection(setting);
  setUpRequest();
  setUpCallbacks();
  return CURLE_OK;
}

void CurlTransfer::setUpConnection(const Setting& setting) {
  CURL* const handle = handle_.get();
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  // A look-up of a name that takes long must not hold up the session's thread when it is given up.
  curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_2TLS});
  curl_easy_setopt(handle, CURLOPT_TCP_KEEPALIVE, 1L);
  // Also has libcurl try a host's next address before the whole time is spent on the first one.
  curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout_.count()));
  curl_easy_setopt(handle, CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
  curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
  if (!setting.caFile.empty()) {
    curl_easy_setopt(handle, CURLOPT_CAINFO, setting.caFile.c_str());
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
  }
  curl_easy_setopt(handle, CURLOPT_SHARE, setting.share);
}

void CurlTransfer::setUpRequest() {
  CURL* const handle = handle_.get();
  curl_easy_setopt(handle, CURLOPT_URL, request_.url.text.c_str());
  curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
  if (const auto body = bodyToSend(request_)) {
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body->size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, body->data());
  } else if (request_.method == "HEAD") {
    curl_easy_setopt(handle, CURLOPT_NOBODY, 1L);
  }
  curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, request_.method.c_str());
  sentHeaders_ = headerList(request_);
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, sentHeaders_.get());
  curl_easy_setopt(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
}

void CurlTransfer::setUpCallbacks() {
  CURL* const handle = handle_.get();
  curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
  curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &receiveHeaderLine);
  curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &receiveBody);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &seeCounters);
  curl_easy_setopt(handle, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(handle, CURLOPT_PREREQFUNCTION, &seeConnection);
  curl_easy_setopt(handle, CURLOPT_PREREQDATA, this);
}

void CurlTransfer::noteProgress(Instant now) {
  if (std::exchange(progressed_, false)) lastProgress_ = now;
}

void CurlTransfer::giveUpConnection() { curl_easy_setopt(handle_.get(), CURLOPT_FORBID_REUSE, 1L); }

bool CurlTransfer::followsRedirect(CURLcode code) {
  const char* target = nullptr;
  if (code != CURLE_OK || !handle_) return false;
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
    completion(std::nullopt, std::move(answer), transportError(result));
  }
}

// libcurl uses some codes for several causes.
CURLcode CurlTransfer::judged(CURLcode code) const {
  if (bodyTooLarge_) return CURLE_FILESIZE_EXCEEDED;
  if (tooManyRedirects_) return CURLE_TOO_MANY_REDIRECTS;
  const bool ambiguous = code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_BAD_FUNCTION_ARGUMENT;
  if (ambiguous && connected_) return CURLE_WEIRD_SERVER_REPLY;
  if (code == CURLE_OK && !headComplete_) return CURLE_GOT_NOTHING;
  return code;
}

std::size_t CurlTransfer::receiveHeaderLine(char* data, std::size_t size, std::size_t count,
                                            void* transfer) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  const std::string_view line(data, size * count);
  self.progressed_ = true;
  // What follows the body is no part of the head; heads of interim answers (1xx) do not count.
  if (self.headComplete_) return line.size();
  if (line.starts_with("HTTP/")) {
    self.receivedHeaders_.clear();
  } else if (line == "\r\n" || line == "\n") {
    self.headComplete_ = statusCodeOf(self.handle_.get()) >= 200;
  } else {
    addHeaderLine(self.receivedHeaders_, line);
  }
  return line.size();
}

std::size_t CurlTransfer::receiveBody(char* data, std::size_t size, std::size_t count,
                                      void* transfer) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  const std::size_t length = size * count;
  self.progressed_ = true;
  self.bodyTooLarge_ = length > self.maximumBodySize_ - self.body_.size();
  if (self.bodyTooLarge_) return CURL_WRITEFUNC_ERROR;
  self.body_.append(data, length);
  return length;
}

int CurlTransfer::seeCounters(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t up) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  self.progressed_ |= std::exchange(self.sent_, up) != up;
  return 0;
}

int CurlTransfer::seeConnection(void* transfer, char*, char*, int, int) {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  self.progressed_ = self.connected_ = true;
  return CURL_PREREQFUNC_OK;
}

}  // namespace ovinta::platform::linux
