#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/wire/RecordCoding.h"
#include "platform/JSON.h"

namespace ovinta::test {

/// The value that the JSON text stands for. Throws `platform::CodingError`.
template <class T>
T decoded(std::string_view json) {
  const auto document = platform::JSONDocument::parse(json);
  if (!document) throw platform::CodingError(platform::CodingError::Kind::dataCorrupted, "no JSON");
  return wire::decode<T>(document->root(), Library::process().context()->dates());
}

/// Many members as one list.
template <class... Texts>
std::vector<std::optional<std::string>> textsOf(const Texts&... texts) {
  return {texts...};
}

/// The JSON text of the value. Throws `platform::CodingError`.
template <class T>
std::string encoded(const T& value) {
  platform::JSONWriter writer;
  wire::encode(writer, value, Library::process().context()->dates());
  return writer.take();
}

/// The error's text: "kind at path: description"; "none" when there is none.
inline std::string codingFailure(const std::function<void()>& coding) {
  try {
    coding();
  } catch (const platform::CodingError& error) {
    return error.what();
  }
  return "none";
}

template <class T>
std::string decodingFailure(std::string_view json) {
  return codingFailure([json] { decoded<T>(json); });
}

template <class T>
std::string encodingFailure(const T& value) {
  return codingFailure([&value] { encoded(value); });
}

}  // namespace ovinta::test
