#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bench/Row.h"
#include "platform/UUID.h"

namespace ovinta::bench {
namespace {

using platform::UUID;

constexpr std::string_view kText = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";

/// Where the two digits of each byte stand.
constexpr std::array<std::size_t, 16> kPlaces{0,  2,  4,  6,  9,  11, 14, 16,
                                              19, 21, 24, 26, 28, 30, 32, 34};

/// The identifier of a text that is known to be one: nothing is checked.
UUID readUnchecked(std::string_view text) {
  const auto digit = [text](std::size_t place) {
    const auto c = static_cast<unsigned char>(text[place]);
    return (c & 0xFU) + (c >> 6) * 9U;
  };
  UUID uuid;
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    const std::size_t place = kPlaces[i];
    uuid.bytes[i] = static_cast<std::uint8_t>(digit(place) << 4 | digit(place + 1));
  }
  return uuid;
}

std::string writeAlone(const UUID& uuid) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text(kText.size(), '-');
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    text[kPlaces[i]] = kDigits[uuid.bytes[i] >> 4];
    text[kPlaces[i] + 1] = kDigits[uuid.bytes[i] & 0xF];
  }
  return text;
}

template <auto kRead>
void read(benchmark::State& state) {
  std::string text(kText);
  if (readUnchecked(text) != UUID::parse(text)) std::abort();
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(kRead(text));
  }
}

template <auto kWrite>
void write(benchmark::State& state) {
  UUID uuid = readUnchecked(kText);
  if (writeAlone(uuid) != kText || uuid.text() != kText) std::abort();
  for (auto _ : state) {
    benchmark::DoNotOptimize(uuid);
    benchmark::DoNotOptimize(kWrite(uuid));
  }
}

std::string writeOurs(const UUID& uuid) { return uuid.text(); }

const TimeRow kRead{"uuid/read", &read<&readUnchecked>, &read<&UUID::parse>, 1.5, Clock::processor};
const TimeRow kWrite{"uuid/write", &write<&writeAlone>, &write<&writeOurs>, 1.5, Clock::processor};

}  // namespace
}  // namespace ovinta::bench
