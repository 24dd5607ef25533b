#pragma once

#include <map>
#include <string>
#include <string_view>

#include "OvintaSDK/model/wire/RecordCoding.h"
#include "platform/JSON.h"

namespace ovinta::test {

/// "kind: description" or, inside a record, "kind at path: description".
inline std::string text(const platform::CodingError& error) {
  using Kind = platform::CodingError::Kind;
  static const std::map<Kind, const char*> kKinds{{Kind::keyNotFound, "keyNotFound"},
                                                  {Kind::typeMismatch, "typeMismatch"},
                                                  {Kind::valueNotFound, "valueNotFound"},
                                                  {Kind::dataCorrupted, "dataCorrupted"},
                                                  {Kind::invalidValue, "invalidValue"}};
  const std::string place = error.codingPath().empty() ? "" : " at " + error.codingPath();
  return kKinds.at(error.kind()) + place + ": " + error.debugDescription();
}

/// The value that the JSON text stands for. Throws `platform::CodingError`.
template <class T>
T decoded(std::string_view json) {
  const auto document = platform::JSONDocument::parse(json);
  if (!document) throw platform::CodingError(platform::CodingError::Kind::dataCorrupted, "no JSON");
  return wire::WireForm<T>::decode(document->root());
}

/// The JSON text of the value. Throws `platform::CodingError`.
template <class T>
std::string encoded(const T& value) {
  platform::JSONWriter writer;
  wire::WireForm<T>::encode(writer, value);
  return writer.take();
}

/// The text of the error of decoding; "none" when there is none.
template <class T>
std::string decodingFailure(std::string_view json) {
  try {
    decoded<T>(json);
  } catch (const platform::CodingError& error) {
    return text(error);
  }
  return "none";
}

template <class T>
std::string encodingFailure(const T& value) {
  try {
    encoded(value);
  } catch (const platform::CodingError& error) {
    return text(error);
  }
  return "none";
}

}  // namespace ovinta::test
