#pragma once

#include <glibmm/variant.h>
#include <glibmm/variantdbusstring.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ovinta::platform::linuxos::dbus {

/// The properties of an object by their names, which travel over the bus as the type `a{sv}`.
using Properties = std::map<Glib::ustring, Glib::VariantBase>;

/// The value when it is there and of the type, otherwise none: what others send is never trusted.
template <class T>
std::optional<T> read(const Glib::VariantBase& value) {
  if (!value.gobj() || !value.is_of_type(Glib::Variant<T>::variant_type())) return std::nullopt;
  return Glib::VariantBase::cast_dynamic<Glib::Variant<T>>(value).get();
}

/// The part of a tuple when there is one at the place and it is of the type.
template <class T>
std::optional<T> read(const Glib::VariantContainerBase& tuple, std::size_t place) {
  if (!tuple.gobj() || tuple.get_n_children() <= place) return std::nullopt;
  Glib::VariantBase part;
  tuple.get_child(part, place);
  return read<T>(part);
}

/// The property when the list has it and it is of the type.
template <class T>
std::optional<T> read(const Properties& properties, const char* name) {
  const auto found = properties.find(name);
  return found == properties.end() ? std::nullopt : read<T>(found->second);
}

/// An object path in a tuple of arguments. `read` hands it out as a text of this type of its own.
using ObjectPath = Glib::DBusObjectPathString;

inline Glib::VariantBase write(const char* text) {
  return Glib::Variant<Glib::ustring>::create(text);
}
inline Glib::VariantBase write(const std::string& text) { return write(text.c_str()); }
/// Wraps a value of any type as the type `v`.
inline Glib::VariantBase write(const Glib::VariantBase& value) {
  return Glib::Variant<Glib::VariantBase>::create(value);
}
template <class T>
Glib::VariantBase write(const T& value) {
  return Glib::Variant<T>::create(value);
}

/// Makes the tuple of the arguments of a method or a signal.
template <class... T>
Glib::VariantContainerBase arguments(const T&... values) {
  return Glib::VariantContainerBase::create_tuple(std::vector<Glib::VariantBase>{write(values)...});
}

}  // namespace ovinta::platform::linuxos::dbus
