#pragma once

#include <chrono>
#include <memory>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/EventStream.h"

namespace ovinta::sandbox {

/// Tells those who watch the service what happens in it. May be used from any thread; streams may
/// outlive it.
class Feed {
 public:
  Feed();
  ~Feed();

  /// A stream of all that is told from now on. An event "reload" comes first, and again in place of
  /// what a reader has missed who is too slow: it means that what was read before may be out of
  /// date.
  std::shared_ptr<EventStream> listen();

  /// Whether anybody listens: what is told otherwise is lost.
  bool isHeard() const;

  /// Sends the event to all who listen.
  void tell(std::string_view event, const platform::Dictionary& data = {});

  /// Ends all waiting, for good, and gives the readers that long to go.
  void close(std::chrono::milliseconds patience);

 private:
  class Reader;
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace ovinta::sandbox
