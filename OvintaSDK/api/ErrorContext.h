#pragma once

#include <string>
#include <string_view>

#include "../../platform/Export.h"

namespace ovinta {

/// Something that names the action in progress, for the titles of errors. It is asked on the thread
/// that makes the error, while that is made.
class ErrorContext {
 public:
  virtual ~ErrorContext() = default;

  /// A lower-case English phrase such as "getting orders", valid as long as this object lives.
  virtual std::string_view errorContext() const = 0;
};

/// What an error is about, as far as its title goes. Words are capitalised by the installed
/// `platform::Text`. Immutable; may be made and used on any thread.
class OVINTA_EXPORT ErrorSubject {
 public:
  /// Nothing in particular: the title is "Error".
  ErrorSubject();

  /// The action in progress: the title is "Error " and the phrase, capitalised word by word.
  ErrorSubject(const ErrorContext& context);

  /// A thing of the named type: the title is "Error with " and the name's words (see
  /// `wordsFromCamelCase`), capitalised.
  static ErrorSubject ofType(std::string_view typeName);

  /// A short English heading, never empty.
  const std::string& title() const { return title_; }

 private:
  std::string title_;
};

}  // namespace ovinta
