#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

#include "EnumNames.h"
#include "Expected.h"
#include "Export.h"

namespace ovinta::platform {

/// Why a JSON text could not be read as, or written from, a record. Never thrown at an application.
/// A plain value.
class OVINTA_EXPORT CodingError : public std::exception {
 public:
  /// What was wrong: a required key is missing; a value is of another type; a value is null or
  /// names no known case; a value, or the text as a whole, is malformed; a value cannot be written.
  /// Has a `name`.
  enum class Kind { keyNotFound, typeMismatch, valueNotFound, dataCorrupted, invalidValue };

  /// An error at the top of the record, its path empty. The description is a sentence in English.
  CodingError(Kind kind, std::string debugDescription);

  /// What was wrong.
  Kind kind() const { return kind_; }
  /// Where: the keys from the outermost key inwards, joined with ".", array positions as "[2]";
  /// empty at the top.
  const std::string& codingPath() const { return codingPath_; }
  /// What was wrong, as a sentence in English for developers.
  const std::string& debugDescription() const { return debugDescription_; }
  /// Puts an outer key, or array position, before the path; for use while the error passes
  /// outwards.
  void prependKey(std::string_view key);
  void prependIndex(std::size_t index);

  /// Kind, path and description in one line; holds no value of the text.
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  void updateText();

  Kind kind_;
  std::string codingPath_;
  std::string debugDescription_;
  std::string text_;
};

/// The kinds in words, in the order of their values.
inline constexpr std::array<std::string_view, 5> kCodingErrorKindNames{
    "key not found", "type mismatch", "value not found", "data corrupted", "invalid value"};
template <>
struct EnumNames<CodingError::Kind> : NamesInOrder<kCodingErrorKindNames> {};

/// What came of reading or writing: a value, or the error that stands in its place.
template <class T>
using Coded = Expected<T, CodingError>;

}  // namespace ovinta::platform
