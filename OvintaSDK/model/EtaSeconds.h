#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <utility>

namespace ovinta {

/// An estimate in seconds as the service takes it. A fraction is cut off; an estimate that no
/// 64-bit integer can hold counts as absent. Immutable; may be used from any thread.
class EtaSeconds {
 public:
  EtaSeconds() = default;
  /// Numbers, optional numbers and nothing at all convert to it.
  EtaSeconds(std::nullopt_t) {}
  EtaSeconds(std::integral auto seconds) {
    if (std::in_range<std::int64_t>(seconds)) whole_ = static_cast<std::int64_t>(seconds);
  }
  EtaSeconds(std::floating_point auto seconds) {
    constexpr double kLimit = 0x1p63;  // The first double out of range.
    if (seconds >= -kLimit && seconds < kLimit) whole_ = static_cast<std::int64_t>(seconds);
  }
  template <class Number>
  EtaSeconds(const std::optional<Number>& seconds)
      : EtaSeconds(seconds ? EtaSeconds(*seconds) : EtaSeconds()) {}

  /// The whole seconds; may be negative.
  const std::optional<std::int64_t>& whole() const { return whole_; }

 private:
  std::optional<std::int64_t> whole_;
};

}  // namespace ovinta
