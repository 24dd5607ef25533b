#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstring>

#include "bench/SampleOrders.h"
#include "platform/JSON.h"

namespace ovinta::bench {
namespace {

using namespace platform;

void setRate(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["per_order"] = benchmark::Counter(
      static_cast<double>(state.range(0)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Floor of reading and writing: the bytes moved once.
void copyBytes(benchmark::State& state) {
  const std::string text = sampleOrders(static_cast<std::size_t>(state.range(0)));
  std::string target(text.size(), '\0');
  for (auto _ : state) {
    std::memcpy(target.data(), text.data(), text.size());
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  setRate(state, text.size());
}

/// Floor of reading: the parser alone, with all its memory at hand.
void parserAlone(benchmark::State& state) {
  const simdjson::padded_string text(sampleOrders(static_cast<std::size_t>(state.range(0))));
  simdjson::dom::parser parser;
  for (auto _ : state) {
    auto element = parser.parse(text);
    benchmark::DoNotOptimize(element);
  }
  setRate(state, text.size());
}

void parseDocument(benchmark::State& state) {
  const std::string text = sampleOrders(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    auto document = JSONDocument::parse(text);
    benchmark::DoNotOptimize(document);
  }
  setRate(state, text.size());
}

/// Visits every value below and returns how many there are.
std::size_t walk(const JSONValue& value) {
  std::size_t count = 1;
  JSONValue child;
  if (value.kind() == JSONValue::Kind::array) {
    for (JSONArrayCursor cursor(value); cursor.next(child);) count += walk(child);
  } else if (value.kind() == JSONValue::Kind::object) {
    std::string_view key;
    for (JSONObjectCursor cursor(value); cursor.next(key, child);) count += walk(child);
  } else if (const auto text = value.string()) {
    benchmark::DoNotOptimize(text->size());
  }
  return count;
}

void parseAndWalk(benchmark::State& state) {
  const std::string text = sampleOrders(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(walk(JSONDocument::parse(text)->root()));
  setRate(state, text.size());
}

void parseToValue(benchmark::State& state) {
  const std::string text = sampleOrders(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(parseJSON(text));
  setRate(state, text.size());
}

void writeFromValue(benchmark::State& state) {
  const auto value = parseJSON(sampleOrders(static_cast<std::size_t>(state.range(0))));
  const std::size_t size = writeJSON(*value).size();
  for (auto _ : state) benchmark::DoNotOptimize(writeJSON(*value));
  setRate(state, size);
}

BENCHMARK(copyBytes)->Name("json/floor/copy")->Arg(1)->Arg(100);
BENCHMARK(parserAlone)->Name("json/floor/parser")->Arg(1)->Arg(100);
BENCHMARK(parseDocument)->Name("json/parse")->Arg(1)->Arg(100);
BENCHMARK(parseAndWalk)->Name("json/parse-and-walk")->Arg(1)->Arg(100);
BENCHMARK(parseToValue)->Name("json/parse-to-value")->Arg(1)->Arg(100);
BENCHMARK(writeFromValue)->Name("json/write")->Arg(1)->Arg(100);

}  // namespace
}  // namespace ovinta::bench
