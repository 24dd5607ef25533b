// The JSON coder, below the records.
#include <simdjson.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bench/Row.h"
#include "bench/SampleOrders.h"
#include "platform/JSON.h"

namespace ovinta::bench {
namespace {

using namespace platform;

const std::string& answer() {
  static const auto* const text = new std::string(arrived(sampleOrders(1000)));
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

/// Texts as records have them: most are plain, some take an escape.
const std::vector<std::string>& texts() {
  static const auto* const list = [] {
    auto* const made = new std::vector<std::string>;
    for (int i = 0; i < 1000; ++i) {
      const std::string number = std::to_string(i);
      made->push_back(i % 10 == 0 ? "Ring at \"Deliveries\",\nplease. " + number
                                  : "Harbour Street Market " + number);
    }
    return made;
  }();
  return *list;
}

std::string writtenAlone() {
  std::string out = "[";
  for (const std::string& text : texts()) {
    out += '"';
    for (const char c : text) {
      if (c == '"' || c == '\\' || c == '\n') out += '\\';
      out += c == '\n' ? 'n' : c;
    }
    out += "\",";
  }
  out.back() = ']';
  return out;
}

std::string written() {
  JSONWriter writer;
  writer.beginArray();
  for (const std::string& text : texts()) writer.string(text);
  writer.endArray();
  return writer.take();
}

void writeAlone(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(writtenAlone());
}

void writeTexts(benchmark::State& state) {
  if (written() != writtenAlone()) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(written());
}

const TimeRow kWriteTexts{"json/write texts", &writeAlone, &writeTexts, 1, Clock::processor};
const TimeRow kWalk{"json/parse and walk", &walkAlone, &walkDocument, 1.6, Clock::processor};

}  // namespace
}  // namespace ovinta::bench
