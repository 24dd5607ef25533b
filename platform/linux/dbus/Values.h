#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/dbus/ValueForms.h"
#include "platform/linux/dbus/Variant.h"

namespace ovinta::platform::linuxos::dbus {

/// The properties of an object by their names, which travel over the bus as the type `a{sv}`.
using Properties = std::map<std::string, Variant>;

/// The value when it is there and of the type, otherwise none: what others send is never trusted.
template <class T>
std::optional<T> read(const Variant& value) {
  if (!value) return std::nullopt;
  if (!g_variant_is_of_type(value.get(), typeOf<T>())) return std::nullopt;
  return Form<T>::read(value.get());
}

/// The part of a tuple when there is one at the place and it is of the type.
template <class T>
std::optional<T> read(const Variant& tuple, std::size_t place) {
  if (!tuple || !g_variant_is_container(tuple.get()) ||
      g_variant_n_children(tuple.get()) <= place) {
    return std::nullopt;
  }
  return read<T>(Variant::taking(g_variant_get_child_value(tuple.get(), place)));
}

/// The property when the list has it and it is of the type.
template <class T>
std::optional<T> read(const Properties& properties, const char* name) {
  const auto found = properties.find(name);
  return found == properties.end() ? std::nullopt : read<T>(found->second);
}

/// The value in its type's form; a variant is wrapped as the type `v`.
template <class T>
Variant write(const T& value) {
  return Variant::taking(Form<T>::write(value));
}
inline Variant write(const char* text) { return write<std::string>(text); }

/// Makes the tuple of the arguments of a method or a signal.
template <class... T>
Variant arguments(const T&... values) {
  const std::array<Variant, sizeof...(T)> parts = {write(values)...};
  std::array<GVariant*, sizeof...(T)> children;
  std::ranges::transform(parts, children.begin(), &Variant::get);
  return Variant::taking(g_variant_new_tuple(children.data(), children.size()));
}

}  // namespace ovinta::platform::linuxos::dbus
