#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/URLSession.h"
#include "platform/linux/http/CurlHandles.h"
#include "platform/linux/http/CurlOptions.h"

namespace ovinta::platform::linuxos {

/// One request on its way, through its redirects, to its one completion. Used by one thread at a
/// time; it stays at its address once begun.
class CurlTransfer {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// What all the transfers of a session have in common.
  struct Options {
    std::string caFile;  ///< Empty: the system's certificates.
    std::chrono::milliseconds timeLimit{};
    std::size_t sizeLimit = 0;
    CURLSH* share = nullptr;
    /// Where a transfer adds itself when it makes progress, for `noteProgress` to be called; null
    /// where nobody looks at deadlines.
    std::vector<CurlTransfer*>* progressed = nullptr;
  };

  CurlTransfer(URLRequest request, URLSession::Completion completion);

  /// Has the request go over a handle that another one with the same options has left. To be called
  /// before `begin`.
  void useHandle(CurlEasy handle) { handle_ = std::move(handle); }
  /// Gives the handle away, with nothing of the request in it but its method; null when there is
  /// none.
  CurlEasy leaveHandle();

  /// Readies `handle()` for the request's next way. The code is the reason when the request cannot
  /// be sent at all.
  CURLcode begin(const Options& options, Instant now);

  /// The handle of the present way; null at first.
  CURL* handle() const { return handle_.get(); }

  /// Takes the time of the last progress, if there was any since the last call, to be `now`.
  void noteProgress(Instant now);

  /// When the request's time is up unless there is progress until then, and in any case at the end
  /// of the whole time that it has.
  Instant deadline() const { return std::min(lastProgress_ + timeout_, end_.value_or(kNever)); }

  /// Keeps the connection from being used again; it has shown itself to be dead.
  void giveUpConnection();

  /// Judges an ended way; true when the answer was a redirect to follow, so that `begin` is to be
  /// called anew.
  bool followsRedirect(CURLcode code);

  /// Calls the completion. `code` tells how the last way ended.
  void complete(CURLcode code);

 private:
  static constexpr Instant kNever = Instant::max();

  static void setUpConnections(CurlOptions& curl, const Options& options);
  static void setUpCallbacks(CurlOptions& curl);
  void setUpRequest(CurlOptions& curl);
  CURLcode judged(CURLcode code) const;
  void markProgress();
  void reserveBody();

  static int seeBytes(CURL* handle, curl_infotype type, char* data, std::size_t size,
                      void* transfer);
  static std::size_t receiveHeaderLine(char* data, std::size_t size, std::size_t count,
                                       void* transfer);
  static std::size_t receiveBody(char* data, std::size_t size, std::size_t count, void* transfer);
  static int seeCounters(void* transfer, curl_off_t downTotal, curl_off_t down, curl_off_t upTotal,
                         curl_off_t up);
  static int seeConnection(void* transfer, char* remoteIP, char* localIP, int remotePort,
                           int localPort);

  URLRequest request_;
  URLSession::Completion completion_;
  std::chrono::milliseconds timeout_;
  std::size_t sizeLimit_ = 0;
  std::optional<Instant> end_;
  CurlEasy handle_;
  CurlList sentHeaders_;
  std::vector<HeaderField> receivedHeaders_;
  std::string body_;
  /// How many bytes of heads and trailers were received since the last redirect.
  std::size_t headSize_ = 0;
  /// How many bytes were received on all ways, counted as they came.
  std::size_t receivedSize_ = 0;
  Instant lastProgress_;
  curl_off_t sent_ = 0;
  std::vector<CurlTransfer*>* progressedOnes_ = nullptr;
  int redirects_ = 0;
  bool progressed_ = false;
  bool connected_ = false;
  bool headComplete_ = false;
  bool tooLarge_ = false;
  bool tooManyRedirects_ = false;
};

}  // namespace ovinta::platform::linuxos
