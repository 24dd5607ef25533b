#include "platform/linux/http/CurlURLSession.h"

#include <algorithm>
#include <climits>
#include <new>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

// How many connections are kept open while nothing goes over them.
constexpr long kIdleConnections = 8;

// Initialises libcurl for the process. It and the libraries below it add their exit handlers here;
// the one of this library, added after, runs first. A first request would be too late for that: it
// may begin while the process ends.
void initialiseOnce() {
  static std::once_flag done;
  std::call_once(done, [] {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    portable::ExitAwareThread::stopAllAtExit();
  });
}

CurlShare makeShare() {
  initialiseOnce();
  CurlShare share(curl_share_init());
  // Where sessions cannot be shared, each connection negotiates its own: slower, and as safe.
  const auto result = curl_share_setopt(share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
  if (result != CURLSHE_OK) share.reset();
  return share;
}

CurlMulti makeMulti() {
  CurlMulti multi(curl_multi_init());
  if (!multi) throw std::bad_alloc();
  // Where the limit cannot be set, libcurl keeps more idle connections, which does no harm.
  (void)curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, kIdleConnections);
  return multi;
}

}  // namespace

CurlURLSession::CurlURLSession() : CurlURLSession(Options()) {}

CurlURLSession::CurlURLSession(Options options)
    : now_(std::move(options.now)),
      share_(makeShare()),
      multi_(makeMulti()),
      transferOptions_{options.caFile.value_or("").string(), options.timeLimit, options.sizeLimit,
                       share_.get()},
      thread_(
          "ovinta-http", [this] { run(); }, [this] { curl_multi_wakeup(multi_.get()); }) {}

CurlURLSession::~CurlURLSession() {
  thread_.stop();
  for (const auto& [handle, transfer] : active_) curl_multi_remove_handle(multi_.get(), handle);
}

void CurlURLSession::startDataTask(URLRequest request, Completion completion) {
  auto transfer = std::make_unique<CurlTransfer>(std::move(request), std::move(completion));
  {
    const std::lock_guard lock(mutex_);
    incoming_.push_back(std::move(transfer));
  }
  thread_.startOnce();
  curl_multi_wakeup(multi_.get());
}

void CurlURLSession::run() {
  while (!thread_.stopping()) {
    beginIncoming();
    // What has arrived by this time is never late, however long the thread is kept from running.
    const auto before = now_();
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    noteProgress();
    collectEnded();
    collectOverdue(before);
    if (!completeCollected()) waitForWork();
  }
}

void CurlURLSession::beginIncoming() {
  Transfers fresh;
  {
    const std::lock_guard lock(mutex_);
    fresh.swap(incoming_);
  }
  for (auto& transfer : fresh) begin(std::move(transfer));
}

void CurlURLSession::begin(std::unique_ptr<CurlTransfer> transfer) {
  CURLcode code = transfer->begin(transferOptions_, now_());
  CURL* const handle = transfer->handle();
  if (code == CURLE_OK && curl_multi_add_handle(multi_.get(), handle) != CURLM_OK) {
    code = CURLE_FAILED_INIT;
  }
  if (code == CURLE_OK) {
    active_[handle] = std::move(transfer);
  } else {
    ended_.push_back({std::move(transfer), code});
  }
}

void CurlURLSession::noteProgress() {
  const auto now = now_();
  for (const auto& [handle, transfer] : active_) transfer->noteProgress(now);
}

void CurlURLSession::collectEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    // The code is copied, because the message does not outlive the handle's removal.
    const CURLcode code = message->data.result;
    auto transfer = detach(message->easy_handle);
    if (transfer->followsRedirect(code)) {
      begin(std::move(transfer));
    } else {
      ended_.push_back({std::move(transfer), code});
    }
  }
}

void CurlURLSession::collectOverdue(CurlTransfer::Instant now) {
  std::vector<CURL*> overdue;
  for (const auto& [handle, transfer] : active_) {
    if (transfer->deadline() <= now) overdue.push_back(handle);
  }
  for (CURL* const handle : overdue) {
    active_[handle]->giveUpConnection();
    ended_.push_back({detach(handle), CURLE_OPERATION_TIMEDOUT});
  }
}

std::unique_ptr<CurlTransfer> CurlURLSession::detach(CURL* handle) {
  curl_multi_remove_handle(multi_.get(), handle);
  const auto found = active_.find(handle);
  auto transfer = std::move(found->second);
  active_.erase(found);
  return transfer;
}

bool CurlURLSession::completeCollected() {
  for (auto& [transfer, code] : ended_) {
    if (thread_.stopping()) return true;
    transfer->complete(code);
  }
  return !std::exchange(ended_, {}).empty();
}

void CurlURLSession::waitForWork() {
  using std::chrono::milliseconds;
  milliseconds wait(INT_MAX);
  const auto now = now_();
  for (const auto& [handle, transfer] : active_) {
    wait = std::min(wait, std::chrono::ceil<milliseconds>(transfer->deadline() - now));
  }
  if (wait.count() <= 0) return;
  curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
}

}  // namespace ovinta::platform::linuxos
