#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ovinta::wire {

/// Finds the position of a key among a fixed set, by hashing. It is made at compile time.
template <std::size_t N>
class KeyIndex {
 public:
  constexpr explicit KeyIndex(const std::array<std::string_view, N>& keys) : keys_(keys) {
    for (std::size_t position = 0; position < N; ++position) {
      std::size_t slot = home(keys[position]);
      while (slots_[slot] != kEmpty) slot = (slot + 1) % kSlots;
      slots_[slot] = static_cast<std::uint8_t>(position);
    }
  }

  /// The key's position; N when it is none of the keys.
  constexpr std::size_t find(std::string_view key) const {
    for (std::size_t slot = home(key); slots_[slot] != kEmpty; slot = (slot + 1) % kSlots) {
      if (keys_[slots_[slot]] == key) return slots_[slot];
    }
    return N;
  }

 private:
  static_assert(N < 128, "positions are kept in bytes, and a quarter of the slots is used at most");
  static constexpr std::size_t kSlots = std::bit_ceil(N * 4 + 1);
  static constexpr std::uint8_t kEmpty = 0xFF;

  // A few characters tell the keys of a record apart; hashing all of them would cost more than the
  // final comparison does.
  static constexpr std::size_t home(std::string_view key) {
    if (key.empty()) return 0;
    const auto at = [&key](std::size_t index) { return static_cast<unsigned char>(key[index]); };
    const std::size_t last = key.size() - 1;
    const std::size_t hash =
        key.size() * 131 + at(last) * 31U + at(last / 2) * 7U + at(last - last / 4) * 257U + at(0);
    return hash % kSlots;
  }

  std::array<std::string_view, N> keys_;
  std::array<std::uint8_t, kSlots> slots_ = filled();

  static constexpr std::array<std::uint8_t, kSlots> filled() {
    std::array<std::uint8_t, kSlots> slots{};
    slots.fill(kEmpty);
    return slots;
  }
};

}  // namespace ovinta::wire
