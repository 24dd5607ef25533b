// The JSON coder, below the records.
#include <simdjson.h>

#include "bench/Row.h"
#include "bench/SampleOrders.h"
#include "platform/JSON.h"

namespace ovinta::bench {
namespace {

using namespace platform;

const std::string& answer() {
  static const auto* const text = [] {
    auto* const made = new std::string(sampleOrders(1000));
    made->reserve(made->size() + simdjson::SIMDJSON_PADDING);
    return made;
  }();
  return *text;
}

/// The parser with all its memory at hand.
simdjson::dom::element parsedAlone() {
  static auto* const parser = new simdjson::dom::parser;
  return parser->parse(answer().data(), answer().size(), false);
}

/// Visits every value below and returns how many there are.
std::size_t walk(const simdjson::dom::element& value) {
  std::size_t count = 1;
  if (value.is_array()) {
    for (const auto child : simdjson::dom::array(value)) count += walk(child);
  } else if (value.is_object()) {
    for (const auto& [key, child] : simdjson::dom::object(value)) count += walk(child);
  } else if (value.is_string()) {
    count += std::string_view(value).size();
  }
  return count;
}

std::size_t walk(const JSONValue& value) {
  std::size_t count = 1;
  JSONValue child;
  if (value.kind() == JSONValue::Kind::array) {
    for (JSONArrayCursor cursor(value); cursor.next(child);) count += walk(child);
  } else if (value.kind() == JSONValue::Kind::object) {
    std::string_view key;
    for (JSONObjectCursor cursor(value); cursor.next(key, child);) count += walk(child);
  } else if (const auto text = value.string()) {
    count += text->size();
  }
  return count;
}

void walkAlone(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(walk(parsedAlone()));
}

void walkDocument(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(walk(JSONDocument::parse(answer())->root()));
}

const TimeRow kWalk{"json/parse and walk", &walkAlone, &walkDocument, 1.4};

}  // namespace
}  // namespace ovinta::bench
