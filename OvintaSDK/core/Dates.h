#pragma once

#include <functional>
#include <memory>

#include "OvintaSDK/core/Lazy.h"
#include "platform/DateFormatter.h"

namespace ovinta {

/// The two forms in which the library and the service write dates. Each formatter is made on first
/// use. May be used from any thread.
class Dates {
 public:
  using FormatterSource = std::function<std::shared_ptr<platform::DateFormatterFactory>()>;

  /// The source is asked when a formatter is made.
  explicit Dates(FormatterSource formatters) : formatters_(std::move(formatters)) {}

  /// The form of the instants of a pickup window: in the device's locale, zone and calendar, the
  /// offset without a colon.
  const platform::DateFormatter& pickupWindow() const;
  /// The form of all other instants: in UTC, the offset with a colon or "Z".
  const platform::DateFormatter& service() const;

 private:
  const FormatterSource formatters_;
  mutable Lazy<const platform::DateFormatter> pickupWindow_;
  mutable Lazy<const platform::DateFormatter> service_;
};

}  // namespace ovinta
