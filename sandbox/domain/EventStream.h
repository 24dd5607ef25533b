#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace ovinta::sandbox {

/// Server-sent events for one reader, one after the other as they come. May be used from any
/// thread, by one at a time.
class EventStream {
 public:
  EventStream() = default;
  virtual ~EventStream() = default;
  EventStream(const EventStream&) = delete;
  EventStream& operator=(const EventStream&) = delete;

  /// What goes before the first event, as text of the stream.
  virtual std::string greeting() const = 0;

  /// The first event that is not yet `taken`, as text of the stream, waiting that long for one;
  /// absent when none came or no more will come.
  virtual std::optional<std::string> nextEvent(std::chrono::milliseconds patience) = 0;

  /// Tells that the event answered last has gone out.
  virtual void taken() = 0;

  /// Whether no event will come any more.
  virtual bool isClosed() const = 0;
};

}  // namespace ovinta::sandbox
