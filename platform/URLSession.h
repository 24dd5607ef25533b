#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "EnumNames.h"
#include "Export.h"
#include "URL.h"

namespace ovinta::platform {

/// One field of an HTTP head. A plain value.
struct HeaderField {
  /// As they are sent, or as they were received.
  std::string name;
  std::string value;

  friend bool operator==(const HeaderField&, const HeaderField&) = default;
};

/// Whether an answer kept by a cache may serve a request: as the protocol's rules say, or never.
enum class CachePolicy { useProtocolCachePolicy, reloadIgnoringLocalAndRemoteCacheData };

/// An HTTP request. A plain value.
struct URLRequest {
  /// Where to send it, as text `url.text`, and the method in upper case.
  URL url;
  std::string method = "GET";
  /// Sent in this order, after the ones that the protocol itself demands.
  std::vector<HeaderField> headers{};
  /// Absent: no body at all.
  std::optional<std::string> body{};
  /// How caches may be used.
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;
  /// The longest time without any progress, connecting included.
  std::chrono::milliseconds timeout{60'000};
};

/// The head of an HTTP answer. A plain value.
struct OVINTA_EXPORT HTTPResponse {
  /// The status, e.g. 200.
  int statusCode = 0;
  /// The fields in the order in which they were received, with their names as received.
  std::vector<HeaderField> headers{};

  /// The value of the first field of that name, compared without regard to the case of ASCII
  /// letters; absent when there is none. May be called from any thread.
  std::optional<std::string> header(std::string_view name) const;
};

/// How far a request came that ended without a complete answer. Has a `name`.
enum class TransportFailure {
  /// Nobody knows, or to send it again would end the same way.
  unknown,
  /// No byte of the request has left the device.
  notSent,
  /// Some of it was sent: the service may have done what it asks for.
  answerLost
};

/// The failures in words, in the order of their values.
inline constexpr std::array<std::string_view, 3> kTransportFailureNames{"unknown", "not sent",
                                                                        "answer lost"};
template <>
struct EnumNames<TransportFailure> : NamesInOrder<kTransportFailureNames> {};

/// Why a request ended without a complete answer. A plain value.
struct TransportError {
  /// A sentence for people; free of the request's URL, headers and body.
  std::string localizedDescription;
  /// How far the request came.
  TransportFailure failure = TransportFailure::unknown;
};

/// Sends requests over HTTP. May be used from any thread.
class URLSession {
 public:
  /// Receives (data, response, error). A complete answer: data, possibly empty but never absent,
  /// and response; of a success without data nobody would hear. A failure: the error, and the
  /// response if its head had arrived.
  using Completion =
      std::function<void(std::optional<std::string> data, std::optional<HTTPResponse> response,
                         std::optional<TransportError> error)>;

  virtual ~URLSession() = default;

  /// Starts the request and returns at once. The completion is called exactly once, never inside
  /// this call, on the session's one callback thread, which is never the main thread; it may start
  /// further requests and must not throw. When the process exits first it is not called.
  virtual void startDataTask(URLRequest request, Completion completion) = 0;
};

}  // namespace ovinta::platform
