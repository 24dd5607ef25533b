#pragma once

#include <string>
#include <string_view>

#include "../../platform/Export.h"

namespace ovinta {

/// Something that names the action in progress, for the titles of errors.
class ErrorContext {
 public:
  virtual ~ErrorContext() = default;

  /// A lower-case phrase such as "getting orders".
  virtual std::string_view errorContext() const = 0;
};

/// What an error is about, as far as its title goes. May be used from any thread.
class OVINTA_EXPORT ErrorSubject {
 public:
  /// Nothing in particular: the title is "Error".
  ErrorSubject();

  /// The action in progress: the title is "Error " and the phrase, capitalised word by word.
  ErrorSubject(const ErrorContext& context);

  /// A thing of the named type: the title is "Error with " and the name's words, capitalised.
  static ErrorSubject ofType(std::string_view typeName);

  const std::string& title() const { return title_; }

 private:
  std::string title_;
};

}  // namespace ovinta
