#pragma once

#include <any>
#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "OvintaSDK/api/ManagerError.h"
#include "OvintaSDK/core/Context.h"

namespace ovinta {

/// The error by which a manager refuses a request, which the log tells too.
template <class Type>
ErrorPtr logRefusal(const Context& context, Type type) {
  auto error = std::make_shared<const ManagerError<Type>>(type);
  context.log(error->localizedDescription());
  return error;
}

/// Posts a notification that carries the error, or nothing when there is none.
inline void postError(const Context& context, platform::NotificationName name,
                      const ErrorPtr& error) {
  context.post(name, error ? std::any(error) : std::any());
}

/// Tells a callback, if there is one, of an error; what it receives besides is absent.
template <class... Parameters>
void tellError(const std::function<void(Parameters...)>& callback, const ErrorPtr& error) {
  if (!callback) return;
  std::tuple<std::decay_t<Parameters>...> arguments;
  std::get<ErrorPtr>(arguments) = error;
  std::apply(callback, std::move(arguments));
}

}  // namespace ovinta
