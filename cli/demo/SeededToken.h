#pragma once

#include <array>
#include <cstdint>
#include <random>

namespace ovinta::cli {

/// The raw bytes of a made-up device token that follows from the seed.
inline std::array<std::uint8_t, 32> seededToken(std::uint64_t seed) {
  std::mt19937_64 generator(seed);
  std::array<std::uint8_t, 32> token{};
  for (std::uint8_t& byte : token) byte = static_cast<std::uint8_t>(generator());
  return token;
}

}  // namespace ovinta::cli
