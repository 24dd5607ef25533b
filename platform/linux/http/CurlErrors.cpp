#include "platform/linux/http/CurlErrors.h"

#include <algorithm>

namespace ovinta::platform::linuxos {
namespace {

struct Sentence {
  CURLcode code;
  const char* text;
};

constexpr const char* kHostNotFound = "The server could not be found.";
constexpr const char* kNoConnection = "Could not connect to the server.";
constexpr const char* kConnectionLost = "The network connection was lost.";
constexpr const char* kNotSecure = "A secure connection to the server could not be made.";
constexpr const char* kUnsupportedURL = "The URL is not supported.";
constexpr const char* kBadAnswer = "The server gave a bad answer.";

constexpr Sentence kSentences[] = {
    {CURLE_COULDNT_RESOLVE_HOST, kHostNotFound},
    {CURLE_COULDNT_RESOLVE_PROXY, "The proxy could not be found."},
    {CURLE_COULDNT_CONNECT, kNoConnection},
    {CURLE_INTERFACE_FAILED, kNoConnection},
    {CURLE_PROXY, "Could not connect through the proxy."},
    {CURLE_OPERATION_TIMEDOUT, "The request timed out."},
    {CURLE_GOT_NOTHING, kConnectionLost},
    {CURLE_SEND_ERROR, kConnectionLost},
    {CURLE_RECV_ERROR, kConnectionLost},
    {CURLE_PARTIAL_FILE, kConnectionLost},
    {CURLE_HTTP2, kConnectionLost},
    {CURLE_HTTP2_STREAM, kConnectionLost},
    {CURLE_SSL_CONNECT_ERROR, kNotSecure},
    {CURLE_PEER_FAILED_VERIFICATION, kNotSecure},
    {CURLE_SSL_CACERT_BADFILE, kNotSecure},
    {CURLE_SSL_CERTPROBLEM, kNotSecure},
    {CURLE_SSL_CIPHER, kNotSecure},
    {CURLE_SSL_ISSUER_ERROR, kNotSecure},
    {CURLE_SSL_INVALIDCERTSTATUS, kNotSecure},
    {CURLE_SSL_CLIENTCERT, kNotSecure},
    {CURLE_UNSUPPORTED_PROTOCOL, kUnsupportedURL},
    {CURLE_URL_MALFORMAT, kUnsupportedURL},
    {CURLE_TOO_MANY_REDIRECTS, "The server redirected the request too many times."},
    {CURLE_FILESIZE_EXCEEDED, "The answer of the server is too large."},
    {CURLE_WEIRD_SERVER_REPLY, kBadAnswer},
    {CURLE_BAD_FUNCTION_ARGUMENT, "The request is not well-formed."},
};

/// The codes of requests that nobody could send.
constexpr CURLcode kUnsendable[] = {CURLE_UNSUPPORTED_PROTOCOL,  CURLE_URL_MALFORMAT,
                                    CURLE_BAD_FUNCTION_ARGUMENT, CURLE_SSL_CACERT_BADFILE,
                                    CURLE_SSL_CERTPROBLEM,       CURLE_SSL_CIPHER,
                                    CURLE_FAILED_INIT,           CURLE_OUT_OF_MEMORY};

/// The codes of connections that ended before the answer was there.
constexpr CURLcode kInterrupted[] = {CURLE_OPERATION_TIMEDOUT, CURLE_GOT_NOTHING,  CURLE_SEND_ERROR,
                                     CURLE_RECV_ERROR,         CURLE_PARTIAL_FILE, CURLE_HTTP2,
                                     CURLE_HTTP2_STREAM};

}  // namespace

TransportError transportError(CURLcode code, bool wasSent) {
  const auto* found = std::ranges::find(kSentences, code, &Sentence::code);
  const char* const text = found == std::end(kSentences) ? "The request failed." : found->text;
  TransportFailure failure = TransportFailure::unknown;
  if (!wasSent && std::ranges::find(kUnsendable, code) == std::end(kUnsendable)) {
    failure = TransportFailure::notSent;
  } else if (wasSent && std::ranges::find(kInterrupted, code) != std::end(kInterrupted)) {
    failure = TransportFailure::answerLost;
  }
  return {text, failure};
}

}  // namespace ovinta::platform::linuxos
