#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "Export.h"

namespace ovinta::platform {

/// Why a JSON text could not be read as, or written from, a record. Never thrown at an application.
class OVINTA_EXPORT CodingError : public std::exception {
 public:
  enum class Kind { keyNotFound, typeMismatch, valueNotFound, dataCorrupted, invalidValue };

  CodingError(Kind kind, std::string debugDescription);

  Kind kind() const { return kind_; }
  /// From the outermost key inwards, joined with ".", array positions as "[2]"; empty at the top.
  const std::string& codingPath() const { return codingPath_; }
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

/// What came of reading or writing: a value, or the error that stands in its place.
template <class T>
class [[nodiscard]] Coded {
 public:
  Coded(T value) : result_(std::in_place_index<0>, std::move(value)) {}
  Coded(CodingError error) : result_(std::in_place_index<1>, std::move(error)) {}

  /// Whether there is a value.
  explicit operator bool() const { return result_.index() == 0; }

  /// The value, which must be there.
  const T& operator*() const& { return *std::get_if<0>(&result_); }
  T&& operator*() && { return std::move(*std::get_if<0>(&result_)); }
  const T* operator->() const { return std::get_if<0>(&result_); }

  /// The error, which must be there.
  const CodingError& error() const { return *std::get_if<1>(&result_); }

 private:
  std::variant<T, CodingError> result_;
};

}  // namespace ovinta::platform
