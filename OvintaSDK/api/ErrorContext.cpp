#include "OvintaSDK/api/ErrorContext.h"

#include "OvintaSDK/core/TextHelpers.h"
#include "platform/Services.h"

namespace ovinta {

ErrorSubject::ErrorSubject() : title_("Error") {}

ErrorSubject::ErrorSubject(const ErrorContext& context)
    : title_(
          platform::services().text->capitalized("Error " + std::string(context.errorContext()))) {}

ErrorSubject ErrorSubject::ofType(std::string_view typeName) {
  ErrorSubject subject;
  subject.title_ += " with " + platform::services().text->capitalized(wordsFromCamelCase(typeName));
  return subject;
}

}  // namespace ovinta
