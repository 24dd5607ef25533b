#include <benchmark/benchmark.h>

#include <cstdlib>

#include "platform/linux/text/ICUDateFormatter.h"

namespace ovinta::bench {
namespace {

using namespace platform;
using linuxos::ICUDateFormatter;
using linuxos::Shortcut;

const DateFormat kService{"yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ", "iso8601", 0, "en_US_POSIX"};
const DateFormat kPickup{"yyyy-MM-dd'T'HH:mm:ss.SSSZ", {}, {}, "en_US"};
constexpr Date kDate{std::chrono::milliseconds(1'614'871'800'123)};

void read(benchmark::State& state, const DateFormat& format, Shortcut shortcut) {
  const ICUDateFormatter formatter(format, shortcut);
  const std::string text = formatter.string(kDate);
  if (formatter.date(text) != kDate) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(formatter.date(text));
}

void write(benchmark::State& state, const DateFormat& format, Shortcut shortcut) {
  const ICUDateFormatter formatter(format, shortcut);
  for (auto _ : state) benchmark::DoNotOptimize(formatter.string(kDate));
}

/// Floor of writing: a text of that length made.
void makeText(benchmark::State& state) {
  const std::string_view text = "2021-03-04T15:30:00.000-0500";
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(std::string(text));
  }
}

BENCHMARK(makeText)->Name("date/floor/text");
BENCHMARK_CAPTURE(read, service, kService, Shortcut::allowed)->Name("date/read/service");
BENCHMARK_CAPTURE(read, serviceICU, kService, Shortcut::never)->Name("date/read/service/icu");
BENCHMARK_CAPTURE(read, pickup, kPickup, Shortcut::allowed)->Name("date/read/pickup");
BENCHMARK_CAPTURE(read, pickupICU, kPickup, Shortcut::never)->Name("date/read/pickup/icu");
BENCHMARK_CAPTURE(write, service, kService, Shortcut::allowed)->Name("date/write/service");
BENCHMARK_CAPTURE(write, serviceICU, kService, Shortcut::never)->Name("date/write/service/icu");
BENCHMARK_CAPTURE(write, pickup, kPickup, Shortcut::allowed)->Name("date/write/pickup");
BENCHMARK_CAPTURE(write, pickupICU, kPickup, Shortcut::never)->Name("date/write/pickup/icu");

}  // namespace
}  // namespace ovinta::bench
