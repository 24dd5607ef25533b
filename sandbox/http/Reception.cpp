#include "sandbox/http/Reception.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "sandbox/http/Answer.h"
#include "sandbox/http/Connection.h"
#include "sandbox/http/Delivery.h"

namespace ovinta::sandbox {
namespace {

constexpr std::size_t kMostConnections = 2048;
/// How many connections are accepted at a time, so that those that have come are looked at before
/// more are let in.
constexpr int kMostAccepted = 64;
constexpr std::size_t kPiece = std::size_t{64} << 10;
/// How many times as long as its head a whole request may take.
constexpr int kRequestTime = 6;
/// When descriptors or memory are used up, how long it takes to accept again: the rest of the
/// process may have set some free by then.
constexpr std::chrono::milliseconds kRetry{100};

/// The most connections at once that leave the rest of the process some of its descriptors.
std::size_t mostConnections() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return kMostConnections;
  return static_cast<std::size_t>(
      std::min<rlim_t>(kMostConnections, std::max<rlim_t>(limit.rlim_cur / 4 * 3, 1)));
}

bool isForLater() { return errno == EAGAIN || errno == EINTR; }

}  // namespace

Reception::Reception(int listener, Limits limits, Handlers handlers)
    : listener_(listener),
      limits_(limits),
      handlers_(std::move(handlers)),
      most_(mostConnections()),
      buffer_(kPiece) {}

Reception::~Reception() {
  finish(std::chrono::milliseconds(0));
  for (Visit& visit : visits_) close(visit);
  ::close(listener_);
}

void Reception::open() {
  thread_ = std::thread([this] { run(); });
}

void Reception::dismiss(int socket, std::string unsent, bool mayGoOn) {
  const std::lock_guard lock(mutex_);
  const bool wasFull = admitted_-- >= most_;
  if (socket >= 0) {
    dismissed_.push_back({.socket = socket, .unsent = std::move(unsent), .mayGoOn = mayGoOn});
  }
  if (wasFull || socket >= 0) wake_.raise();
}

void Reception::awaitTurn(std::unique_lock<std::mutex>& lock) {
  const std::size_t turn = ++turnsAsked_;
  wake_.raise();
  turned_.wait(lock, [&] { return turnsTaken_ >= turn; });
}

void Reception::dropKept() {
  std::unique_lock lock(mutex_);
  awaitTurn(lock);
}

void Reception::shut() {
  std::unique_lock lock(mutex_);
  mustShut_ = true;
  awaitTurn(lock);
}

void Reception::finish(std::chrono::milliseconds patience) {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    mustShut_ = true;
    end_ = Clock::now() + patience;
    wake_.raise();
  }
  thread_.join();
}

void Reception::run() {
  while (takeBack()) {
    limitMemory();
    auto events = awaitEvents().begin();
    if ((events++)->revents != 0) wake_.lower();
    const bool isVisited = (events++)->revents != 0;
    for (Visit& visit : visits_) {
      if ((events++)->revents != 0) serve(visit);
      if (visit.socket >= 0 && Clock::now() >= visit.deadline) expire(visit);
    }
    forgetClosed();
    if (isVisited) accept();
  }
}

bool Reception::takeBack() {
  Visits dismissed;
  std::size_t turn = 0;
  {
    const std::lock_guard lock(mutex_);
    turn = turnsAsked_;
    dismissed.swap(dismissed_);
    isOpen_ = !mustShut_;
    until_ = end_;
  }
  for (Visit& visit : dismissed) leave(visit, std::move(visit.unsent));
  visits_.splice(visits_.end(), dismissed);
  if (!mayKeep()) {
    for (Visit& visit : visits_) {
      if (visit.isIdle()) {
        endIdle(visit);
      } else if (visit.request && !isOpen_) {
        close(visit);
      }
    }
    forgetClosed();
  }
  const std::lock_guard lock(mutex_);
  turnsTaken_ = turn;
  turned_.notify_all();
  if (isOpen_ || until_ == Clock::time_point::max()) return true;
  return Clock::now() < until_ && !visits_.empty();
}

void Reception::forgetClosed() {
  std::erase_if(visits_, [](const Visit& visit) { return visit.socket < 0; });
}

void Reception::limitMemory() {
  std::size_t held = 0;
  for (const Visit& visit : visits_) held += visit.size();
  while (held > limits_.memory) {
    // Of several that are equally large this is the one that came first.
    Visit& largest = *std::ranges::max_element(visits_, {}, &Visit::size);
    held -= largest.size();
    if (!largest.request) {
      close(largest);
    } else {
      largest.request->refuse(errorAnswer(503, "request", "takes the memory that others need"));
      refuse(largest);
    }
    forgetClosed();
  }
}

const std::vector<pollfd>& Reception::awaitEvents() {
  const bool accepts = isOpen_ && Clock::now() >= nextAccept_ && !isFull();
  watched_.clear();
  watched_.push_back({.fd = wake_.descriptor(), .events = POLLIN, .revents = 0});
  // A negative descriptor is passed over.
  watched_.push_back({.fd = accepts ? listener_ : -1, .events = POLLIN, .revents = 0});
  for (const Visit& visit : visits_) {
    const bool mustSend = !visit.request && !visit.isAllSent;
    watched_.push_back({.fd = visit.socket,
                        .events = static_cast<short>(mustSend ? POLLOUT : POLLIN),
                        .revents = 0});
  }
  const Clock::time_point deadline = nextDeadline();
  int timeout = -1;
  if (deadline != Clock::time_point::max()) {
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    timeout = static_cast<int>(std::max<std::chrono::milliseconds::rep>(time.count(), 0));
  }
  // When it fails no descriptor has an event.
  ::poll(watched_.data(), watched_.size(), timeout);
  return watched_;
}

Reception::Clock::time_point Reception::nextDeadline() const {
  Clock::time_point deadline = until_;
  if (nextAccept_ > Clock::now()) deadline = std::min(deadline, nextAccept_);
  for (const Visit& visit : visits_) deadline = std::min(deadline, visit.deadline);
  return deadline;
}

bool Reception::isFull() {
  const std::lock_guard lock(mutex_);
  return admitted_ >= most_;
}

void Reception::dropOne() {
  const auto idle = std::ranges::find_if(visits_, &Visit::isIdle);
  const auto dropped = idle == visits_.end() ? visits_.begin() : idle;
  close(*dropped);
  visits_.erase(dropped);
}

void Reception::accept() {
  for (int count = 0; count < kMostAccepted && !isFull(); ++count) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket >= 0) {
      receiveFrom(socket);
    } else if (errno == EAGAIN) {
      return;
    } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
      nextAccept_ = Clock::now() + kRetry;
      if (!visits_.empty()) dropOne();
      return;
    }
  }
}

void Reception::receiveFrom(int socket) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  visits_.push_back({.socket = socket,
                     .deadline = Clock::now() + limits_.patience,
                     .request = std::make_unique<IncomingRequest>(limits_.isPublic)});
  const std::lock_guard lock(mutex_);
  if (visits_.size() + admitted_ > most_) dropOne();
}

void Reception::serve(Visit& visit) {
  if (visit.request) {
    receive(visit);
  } else {
    send(visit);
  }
}

void Reception::receive(Visit& visit) {
  using enum IncomingRequest::State;
  const auto count = ::recv(visit.socket, buffer_.data(), buffer_.size(), 0);
  if (count < 0) {
    if (!isForLater()) close(visit);
    return;
  }
  IncomingRequest& request = *visit.request;
  if (count == 0) {
    if (request.text().empty()) return close(visit);
    request.refuse(errorAnswer(400, "request", "is not whole"));
    return refuse(visit);
  }
  const bool wasIdle = visit.isIdle();
  const auto before = request.state();
  const auto state = request.take({buffer_.data(), static_cast<std::size_t>(count)});
  if (wasIdle && !visit.isIdle()) visit.deadline = Clock::now() + limits_.patience;
  if (state == refused) return refuse(visit);
  if (state == whole) {
    {
      const std::lock_guard lock(mutex_);
      ++admitted_;
    }
    return handlers_.admit(std::exchange(visit.socket, -1), std::move(visit.request));
  }
  if (before == head && state == body) visit.deadline += limits_.patience * (kRequestTime - 1);
  if (request.takeWishToContinue()) sendSome(visit.socket, "HTTP/1.1 100 Continue\r\n\r\n");
}

void Reception::refuse(Visit& visit) {
  handlers_.refused(visit.request->head(), visit.request->refusal());
  const bool withBody = visit.request->head().method != "HEAD";
  leave(visit, wireText(visit.request->refusal(), withBody));
}

void Reception::expire(Visit& visit) {
  if (visit.isIdle()) return endIdle(visit);
  if (!visit.request) return close(visit);
  visit.request->refuse(errorAnswer(408, "request", "came too slowly"));
  refuse(visit);
}

void Reception::endIdle(Visit& visit) {
  visit.request = nullptr;
  visit.mayGoOn = false;
  visit.deadline = Clock::now() + limits_.patience;
  ::shutdown(visit.socket, SHUT_WR);
  // Closed with a request unread, it would take along the answer that its client may still read.
  if (::recv(visit.socket, buffer_.data(), buffer_.size(), 0) <= 0) close(visit);
}

void Reception::leave(Visit& visit, std::string unsent) {
  // What was refused is the last that is heard.
  if (std::exchange(visit.request, nullptr)) visit.mayGoOn = false;
  visit.unsent = std::move(unsent);
  visit.sent = 0;
  visit.isAllSent = false;
  visit.deadline = Clock::now() + limits_.patience;
  send(visit);
}

void Reception::send(Visit& visit) {
  if (!visit.isAllSent) {
    const auto count = sendSome(visit.socket, std::string_view(visit.unsent).substr(visit.sent));
    if (!count) return close(visit);
    if (*count > 0) visit.deadline = Clock::now() + limits_.patience;
    visit.sent += *count;
    if (visit.sent < visit.unsent.size()) return;
    visit.unsent = {};
    visit.isAllSent = true;
    if (visit.mayGoOn && mayKeep()) {
      visit.request = std::make_unique<IncomingRequest>(limits_.isPublic);
      return;
    }
    ::shutdown(visit.socket, SHUT_WR);
  }
  // A connection that is closed while its client still sends takes the answer along.
  const auto count = ::recv(visit.socket, buffer_.data(), buffer_.size(), 0);
  if (count == 0 || (count < 0 && !isForLater())) close(visit);
}

void Reception::close(Visit& visit) {
  if (visit.socket < 0) return;
  ::close(std::exchange(visit.socket, -1));
}

}  // namespace ovinta::sandbox
