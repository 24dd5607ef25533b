#include "platform/linux/http/CurlURLSession.h"

#include <algorithm>
#include <climits>
#include <new>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

// How many connections and handles are kept at least while there are no requests for them.
constexpr std::size_t kFewestKept = 8;

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
  return multi;
}

}  // namespace

CurlURLSession::CurlURLSession() : CurlURLSession(Options()) {}

CurlURLSession::CurlURLSession(Options options)
    : now_(std::move(options.now)),
      beforeWaiting_(std::move(options.beforeWaiting)),
      share_(makeShare()),
      multi_(makeMulti()),
      transferOptions_{options.caFile.value_or("").string(), options.timeLimit, options.sizeLimit,
                       share_.get(), &progressed_},
      thread_(
          "ovinta-http", [this] { run(); }, [this] { curl_multi_wakeup(multi_.get()); }) {}

CurlURLSession::~CurlURLSession() {
  thread_.stop();
  for (const auto& [handle, transfer] : active_) curl_multi_remove_handle(multi_.get(), handle);
}

void CurlURLSession::startDataTask(URLRequest request, Completion completion) {
  auto transfer = std::make_unique<CurlTransfer>(std::move(request), std::move(completion));
  bool isFirst = false;
  {
    const std::lock_guard lock(mutex_);
    isFirst = incoming_.empty();
    incoming_.push_back(std::move(transfer));
  }
  thread_.startOnce();
  // One call wakes the thread for all that comes until it looks, which it does by itself after the
  // completions that it calls.
  if (isFirst && !thread_.isCurrent()) curl_multi_wakeup(multi_.get());
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
  for (auto& transfer : fresh) {
    if (!spares_.empty()) {
      transfer->useHandle(std::move(spares_.back()));
      spares_.pop_back();
    }
    begin(std::move(transfer));
  }
  progressed_.reserve(active_.size());
  setWidth(std::max({active_.size(), width_, kFewestKept}));
}

void CurlURLSession::setWidth(std::size_t width) {
  if (width == width_) return;
  width_ = width;
  // The limit is that of all connections, those in use included: with a lower one each request that
  // ends would close its own or another's. Where it cannot be set, libcurl keeps a number of its
  // own, which does no harm.
  (void)curl_multi_setopt(multi_.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(width_));
}

void CurlURLSession::begin(std::unique_ptr<CurlTransfer> transfer) {
  CURLcode code = transfer->begin(transferOptions_, now_());
  CURL* const handle = transfer->handle();
  if (code == CURLE_OK && curl_multi_add_handle(multi_.get(), handle) != CURLM_OK) {
    code = CURLE_FAILED_INIT;
  }
  if (code == CURLE_OK) {
    nextDeadline_ = std::min(nextDeadline_, transfer->deadline());
    active_[handle] = std::move(transfer);
  } else {
    ended_.push_back({std::move(transfer), code});
  }
}

void CurlURLSession::noteProgress() {
  if (progressed_.empty()) return;
  const auto now = now_();
  for (CurlTransfer* const transfer : progressed_) transfer->noteProgress(now);
  progressed_.clear();
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
  // Progress only puts deadlines off, so that most turns need not look at them.
  if (now < nextDeadline_) return;
  nextDeadline_ = CurlTransfer::Instant::max();
  std::vector<CURL*> overdue;
  for (const auto& [handle, transfer] : active_) {
    const auto deadline = transfer->deadline();
    if (deadline <= now) {
      overdue.push_back(handle);
    } else {
      nextDeadline_ = std::min(nextDeadline_, deadline);
    }
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
  // libcurl may have told of its progress just now.
  std::erase(progressed_, transfer.get());
  return transfer;
}

bool CurlURLSession::completeCollected() {
  for (auto& [transfer, code] : ended_) {
    if (thread_.stopping()) return true;
    transfer->complete(code);
    keepHandle(transfer->leaveHandle());
  }
  const bool wereSome = !ended_.empty();
  ended_.clear();
  return wereSome;
}

void CurlURLSession::keepHandle(CurlEasy handle) {
  if (handle && spares_.size() < width_) spares_.push_back(std::move(handle));
}

void CurlURLSession::waitForWork() {
  using std::chrono::milliseconds;
  milliseconds wait(INT_MAX);
  if (active_.empty()) {
    nextDeadline_ = CurlTransfer::Instant::max();
    if (spares_.size() > kFewestKept) spares_.resize(kFewestKept);
    setWidth(kFewestKept);
  } else {
    wait = std::min(wait, std::chrono::ceil<milliseconds>(nextDeadline_ - now_()));
  }
  if (wait.count() <= 0) return;
  if (beforeWaiting_) wait = std::min(wait, std::chrono::floor<milliseconds>(beforeWaiting_()));
  curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
}

}  // namespace ovinta::platform::linuxos
