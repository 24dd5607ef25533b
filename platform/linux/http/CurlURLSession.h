#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/URLSession.h"
#include "platform/linux/http/CurlHandles.h"
#include "platform/linux/http/CurlTransfer.h"
#include "platform/portable/ExitAwareThread.h"

namespace ovinta::platform::linuxos {

/// Sends requests through libcurl, all on one thread, which starts with the first of them and
/// sleeps while there are none. Nothing is kept between requests but open connections, libcurl's
/// handles and TLS sessions: no cookies, no cache, no passwords. Of connections and handles as many
/// are kept as there are requests at once; what is more than a few is given back when there are
/// none, connections one by one as later requests end. Proxies are taken from the environment.
class CurlURLSession final : public URLSession {
 public:
  struct Options {
    /// The certificates to trust instead of the system's.
    std::optional<std::filesystem::path> caFile{};
    /// The longest that one request takes in all, its redirects included, whatever its own timeout.
    std::chrono::milliseconds timeLimit = std::chrono::minutes(1);
    /// The most bytes that one request may receive: heads, bodies (also as they are decoded), their
    /// framing and the answers that redirect. What goes beyond is not read, and is a failure.
    std::size_t sizeLimit = std::size_t{4} << 20;
    /// Tells the time that the limits are measured by. It is called on the session's thread.
    std::function<CurlTransfer::Instant()> now = &std::chrono::steady_clock::now;
    /// Called on the session's thread each time before it waits; says how long it may at most.
    std::function<std::chrono::microseconds()> beforeWaiting = {};
  };

  CurlURLSession();
  explicit CurlURLSession(Options options);

  /// Drops the requests under way without calling their completions, and waits for a completion in
  /// progress. Must not be called from a completion.
  ~CurlURLSession() override;

  /// Redirects are followed within their origin, ten of them at most; one that leads to another
  /// origin is the answer. After the process's exit began nothing is sent any more.
  void startDataTask(URLRequest request, Completion completion) override;

  /// Has the session look what time it is, as is needed where `now` is a clock that does not pass
  /// by itself. May be called from any thread.
  void lookAtTime() { curl_multi_wakeup(multi_.get()); }

 private:
  using Transfers = std::vector<std::unique_ptr<CurlTransfer>>;

  void run();
  void beginIncoming();
  void begin(std::unique_ptr<CurlTransfer> transfer);
  void setWidth(std::size_t width);
  void noteProgress();
  void collectEnded();
  void collectOverdue(CurlTransfer::Instant now);
  std::unique_ptr<CurlTransfer> detach(CURL* handle);
  bool completeCollected();
  void keepHandle(CurlEasy handle);
  void waitForWork();

  struct Ended {
    std::unique_ptr<CurlTransfer> transfer;
    CURLcode code;
  };

  const std::function<CurlTransfer::Instant()> now_;
  const std::function<std::chrono::microseconds()> beforeWaiting_;
  CurlShare share_;
  CurlMulti multi_;
  CurlTransfer::Options transferOptions_;
  std::mutex mutex_;
  Transfers incoming_;
  // The members from here on belong to the thread. They are not local to it, because they are left
  // as they are when the process exits, and have to stay within reach.
  /// The transfers that have made progress of which they were not told yet. Libcurl's callbacks add
  /// them, who must not allocate; it outlives the transfers, which refer to it.
  std::vector<CurlTransfer*> progressed_;
  std::unordered_map<CURL*, std::unique_ptr<CurlTransfer>> active_;
  std::vector<Ended> ended_;
  /// Handles of requests that have ended, for the next ones.
  std::vector<CurlEasy> spares_;
  /// How many connections and handles are kept: the most requests that were under way at once since
  /// there were none, or a few.
  std::size_t width_ = 0;
  /// No request's time is up before this instant.
  CurlTransfer::Instant nextDeadline_ = CurlTransfer::Instant::max();
  portable::ExitAwareThread thread_;
};

}  // namespace ovinta::platform::linuxos
