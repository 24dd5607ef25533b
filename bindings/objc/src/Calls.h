#pragma once

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace twins {

/// Runs a call from Objective-C into the library. A `std::exception` that leaves it, which only
/// an application's own services can throw, is raised as `NSInternalInconsistencyException`.
void enterLibrary(const std::function<void()>& call);

/// The same with the call's result.
template <class Call>
auto callLibrary(const Call& call) {
  if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
    enterLibrary(call);
  } else {
    std::optional<std::invoke_result_t<Call>> result;
    enterLibrary([&] { result.emplace(call()); });
    return *std::move(result);
  }
}

/// Runs a call from the library into the application's Objective-C code, on whatever thread. What
/// is thrown or raised there is logged and goes no further.
void callApplication(const std::function<void()>& call);

}  // namespace twins
