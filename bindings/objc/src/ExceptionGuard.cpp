#include "bindings/objc/src/ExceptionGuard.h"

#include <exception>

namespace twins {

std::optional<std::string> standardException(const std::function<void()>& call) {
  try {
    call();
    return std::nullopt;
  } catch (const std::exception& exception) {
    return exception.what();
  }
}

std::optional<std::string> anyException(const std::function<void()>& call) noexcept {
  try {
    return standardException(call);
  } catch (...) {
    return "an exception of unknown kind";
  }
}

}  // namespace twins
