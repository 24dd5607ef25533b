#pragma once

#include <poll.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/http/IncomingRequest.h"
#include "sandbox/http/WakeSignal.h"

namespace ovinta::sandbox {

/// Accepts connections, receives their requests and sends what is left of their answers, all on one
/// thread, so that a client that is slow, or falls silent, keeps nobody waiting. When there are too
/// many of them, one must go that waits for its client's next request, or else the first that came;
/// when they take too much memory, the one that takes most.
class Reception {
 public:
  /// Is told of a request that is refused: its head, empty where it was not understood, and what
  /// it is answered.
  using RefusalHandler = std::function<void(const RequestHead& head, const Answer& answer)>;

  /// All are called on the reception's thread and must not wait.
  struct Handlers {
    /// Takes a whole request over, and its socket, which does not block. Must lead to one call of
    /// `dismiss`.
    std::function<void(int socket, std::unique_ptr<IncomingRequest> request)> admit;
    RefusalHandler refused;
    /// Whether clients may use their connections for another request at present.
    std::function<bool()> keeps;
  };

  struct Limits {
    /// A head must come within it, a whole request within six times that; for no longer a client
    /// may take nothing of its answer, and a connection is kept for its client's next request.
    std::chrono::milliseconds patience;
    /// The bytes that requests which are not whole, and answers which are not taken, may hold.
    std::size_t memory;
    /// Whether it serves other machines too, which may name it as they like.
    bool isPublic = false;
  };

  /// Takes the listening socket over; nobody is received before `open`.
  Reception(int listener, Limits limits, Handlers handlers);
  /// Closes all connections at once.
  ~Reception();
  Reception(const Reception&) = delete;
  Reception& operator=(const Reception&) = delete;

  /// Begins to receive; call it once, when what the handlers use is there.
  void open();

  /// Takes back a connection that was admitted, -1 for one that is closed, with what is still to be
  /// sent. Where the client may go on, and connections are kept, its next request is received;
  /// otherwise the connection is closed once its client has closed it, or has not done so for too
  /// long. May be called from any thread.
  void dismiss(int socket, std::string unsent, bool mayGoOn);

  /// Returns when those connections have ended which wait for another request and, as the handlers
  /// say, may not. May be called from any other thread than the reception's, between `open` and
  /// `finish`.
  void dropKept();

  /// From here on no request is admitted, and those that are not whole are forgotten. Call it after
  /// `open`.
  void shut();
  /// Gives clients that long to take what is left for them, and ends; call it once, after `shut`
  /// and when all that was admitted is dismissed.
  void finish(std::chrono::milliseconds patience);

 private:
  using Clock = std::chrono::steady_clock;

  /// A connection whose request is still to come, or whose answer is still to be taken.
  struct Visit {
    int socket = -1;
    Clock::time_point deadline = {};
    /// The request as far as it has come; null once there is an answer.
    std::unique_ptr<IncomingRequest> request = nullptr;
    std::string unsent = {};
    std::size_t sent = 0;
    bool isAllSent = false;
    /// Whether another request may follow the answer.
    bool mayGoOn = false;

    /// Whether the client has had an answer, and owes no request.
    bool isIdle() const { return mayGoOn && request && request->text().empty(); }
    std::size_t size() const { return request ? request->text().size() : unsent.size(); }
  };
  using Visits = std::list<Visit>;

  void run();
  /// Wakes the thread and returns when it has acted on what it finds.
  void awaitTurn(std::unique_lock<std::mutex>& lock);
  bool mayKeep() const { return isOpen_ && handlers_.keeps(); }
  /// Takes what was dismissed; answers whether it is time to go on.
  bool takeBack();
  /// Refuses or drops the largest visits while all together hold too much.
  void limitMemory();
  /// Waits for an event or the next deadline. Answers the events of the wake signal, the listener
  /// and the visits, in that order.
  const std::vector<pollfd>& awaitEvents();
  Clock::time_point nextDeadline() const;
  void accept();
  void receiveFrom(int socket);
  /// Whether the requests being answered alone are as many as there may be connections.
  bool isFull();
  void dropOne();
  void forgetClosed();
  void serve(Visit& visit);
  void receive(Visit& visit);
  void leave(Visit& visit, std::string unsent);
  void send(Visit& visit);
  void refuse(Visit& visit);
  void expire(Visit& visit);
  void endIdle(Visit& visit);
  static void close(Visit& visit);

  const int listener_;
  const Limits limits_;
  const Handlers handlers_;
  /// How many connections there may be, those whose requests are being answered included.
  const std::size_t most_;
  WakeSignal wake_;

  std::mutex mutex_;
  std::condition_variable turned_;
  Visits dismissed_;
  /// How many connections are with whoever answers their requests.
  std::size_t admitted_ = 0;
  bool mustShut_ = false;
  /// How many turns of the thread were waited for, and how many of them it has taken.
  std::size_t turnsAsked_ = 0;
  std::size_t turnsTaken_ = 0;
  Clock::time_point end_ = Clock::time_point::max();

  // The members that follow are used on the reception's thread only.
  bool isOpen_ = true;
  Clock::time_point until_ = Clock::time_point::max();
  /// The connections that are received or sent to, in the order in which they came.
  Visits visits_;
  std::vector<pollfd> watched_;
  std::vector<char> buffer_;
  /// No connection is accepted before this time.
  Clock::time_point nextAccept_ = Clock::time_point::min();
  std::thread thread_;
};

}  // namespace ovinta::sandbox
