#pragma once

#include <optional>
#include <utility>
#include <vector>

namespace ovinta {

/// The list without its null entries, which an application may hand in and nothing can use.
template <class T>
std::vector<T> withoutNulls(std::vector<T> list) {
  std::erase(list, nullptr);
  return list;
}

template <class T>
std::optional<std::vector<T>> withoutNulls(std::optional<std::vector<T>> list) {
  if (list) list = withoutNulls(*std::move(list));
  return list;
}

}  // namespace ovinta
