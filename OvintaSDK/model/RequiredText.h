#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ovinta {

/// A text without which an application cannot build a record: it has no default, and nothing absent
/// converts to it. It reads like a `std::optional<std::string>`, since a record that was read, or
/// that the library itself built, may lack the text. A plain value.
class RequiredText {
 public:
  /// Texts convert to it, an empty one too.
  RequiredText(std::string text) : text_(std::move(text)) {}
  RequiredText(std::string_view text) : text_(text) {}
  /// `text` must not be null.
  RequiredText(const char* text) : text_(text) {}
  RequiredText(std::nullptr_t) = delete;

  /// The text; absent only in a record that was read without it or that the library built.
  const std::optional<std::string>& get() const { return text_; }
  operator const std::optional<std::string>&() const { return text_; }

  /// Whether there is a text.
  explicit operator bool() const { return text_.has_value(); }
  bool has_value() const { return text_.has_value(); }
  /// The text must be there.
  const std::string& operator*() const { return *text_; }
  const std::string* operator->() const { return &*text_; }
  /// The text, or the given one where there is none.
  template <class Default>
  std::string value_or(Default&& text) const {
    return text_.value_or(std::forward<Default>(text));
  }

  friend bool operator==(const RequiredText&, const RequiredText&) = default;
  friend bool operator==(const RequiredText& text, const std::optional<std::string>& other) {
    return text.text_ == other;
  }
  template <class Text>
  requires std::convertible_to<const Text&, std::string_view>
  friend bool operator==(const RequiredText& text, const Text& other) {
    return text.text_ == std::string_view(other);
  }

 private:
  friend struct RequiredTextAccess;
  explicit RequiredText(std::optional<std::string> text) : text_(std::move(text)) {}

  std::optional<std::string> text_;
};

}  // namespace ovinta
