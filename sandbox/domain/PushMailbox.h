#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/domain/EventStream.h"

namespace ovinta::sandbox {

/// Hands push payloads to whoever listens for a push token, and keeps them while nobody does. May
/// be used from any thread; listeners may outlive it.
class PushMailbox {
 public:
  /// One listener's own line of payloads. What nobody has taken when it goes is for another
  /// listener, or waits for the next.
  class Listener : public EventStream {
    struct Line;

   public:
    explicit Listener(std::unique_ptr<Line> line);
    ~Listener() override;

    /// The first payload that is not yet `taken`, waiting that long for one; absent when none came
    /// or the mailbox has closed.
    std::optional<std::string> next(std::chrono::milliseconds patience);

    std::string greeting() const override { return ": listening\n\n"; }
    /// The same payload as an event.
    std::optional<std::string> nextEvent(std::chrono::milliseconds patience) override;
    void taken() override;
    bool isClosed() const override;

   private:
    friend class PushMailbox;
    const std::unique_ptr<Line> line_;
  };

  PushMailbox();
  ~PushMailbox();

  /// A listener that gets the token's waiting payloads first, then each new one.
  std::shared_ptr<Listener> listen(std::string_view pushToken);

  /// Gives the payload to all listeners of the token, or keeps it when there is none. Answers how
  /// many listeners there are.
  std::size_t send(std::string_view pushToken, std::string payload);

  /// Drops the payloads that nobody has listened for yet.
  void clear();

  /// Ends all waiting, for good, and gives the listeners that long to go.
  void close(std::chrono::milliseconds patience);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace ovinta::sandbox
