#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/linux/dbus/Variant.h"

namespace ovinta::platform::linuxos::dbus {

/// The path of an object on the bus, a text of a type of its own.
class ObjectPath : public std::string {
 public:
  using std::string::string;
  ObjectPath(std::string path) : std::string(std::move(path)) {}
};

/// How a type of this language travels over the bus: its signature there, `read` for a value that
/// has this signature, and `write`, whose result is floating.
template <class T>
struct Form;

/// GLib's form of the type's signature, which is never destroyed.
template <class T>
const GVariantType* typeOf() {
  static const auto& signature = *new std::string(Form<T>::signature());
  return reinterpret_cast<const GVariantType*>(signature.c_str());
}

/// The form of a type that the bus has itself.
template <class T, char kSignature, auto kRead, auto kWrite>
struct BasicForm {
  static std::string signature() { return {kSignature}; }
  static T read(GVariant* value) { return static_cast<T>(kRead(value)); }
  static GVariant* write(T value) { return kWrite(value); }
};

template <>
struct Form<bool> : BasicForm<bool, 'b', &g_variant_get_boolean, &g_variant_new_boolean> {};
template <>
struct Form<std::uint8_t> : BasicForm<std::uint8_t, 'y', &g_variant_get_byte, &g_variant_new_byte> {
};
template <>
struct Form<std::int16_t>
    : BasicForm<std::int16_t, 'n', &g_variant_get_int16, &g_variant_new_int16> {};
template <>
struct Form<std::uint16_t>
    : BasicForm<std::uint16_t, 'q', &g_variant_get_uint16, &g_variant_new_uint16> {};
template <>
struct Form<std::int32_t>
    : BasicForm<std::int32_t, 'i', &g_variant_get_int32, &g_variant_new_int32> {};
template <>
struct Form<std::uint32_t>
    : BasicForm<std::uint32_t, 'u', &g_variant_get_uint32, &g_variant_new_uint32> {};
template <>
struct Form<std::uint64_t>
    : BasicForm<std::uint64_t, 't', &g_variant_get_uint64, &g_variant_new_uint64> {};
template <>
struct Form<double> : BasicForm<double, 'd', &g_variant_get_double, &g_variant_new_double> {};

/// The form of a kind of text.
template <class T, char kSignature, auto kWrite>
struct TextForm {
  static std::string signature() { return {kSignature}; }
  static T read(GVariant* value) {
    gsize length = 0;
    const char* const text = g_variant_get_string(value, &length);
    return T(text, length);
  }
  static GVariant* write(const T& text) { return kWrite(text.c_str()); }
};

template <>
struct Form<std::string> : TextForm<std::string, 's', &g_variant_new_string> {};
template <>
struct Form<ObjectPath> : TextForm<ObjectPath, 'o', &g_variant_new_object_path> {};

template <>
struct Form<Variant> {
  static std::string signature() { return "v"; }
  static Variant read(GVariant* value) { return Variant::taking(g_variant_get_variant(value)); }
  static GVariant* write(const Variant& value) { return g_variant_new_variant(value.get()); }
};

/// The form of what holds any number of equal parts.
template <class Container, class Part>
struct ArrayForm {
  static std::string signature() { return "a" + Form<Part>::signature(); }
  static Container read(GVariant* value) {
    Container all;
    for (gsize place = 0; place < g_variant_n_children(value); ++place) {
      const auto part = Variant::taking(g_variant_get_child_value(value, place));
      all.insert(all.end(), Form<Part>::read(part.get()));
    }
    return all;
  }
  static GVariant* write(const Container& all) {
    std::vector<GVariant*> parts;
    parts.reserve(all.size());
    for (const auto& part : all) parts.push_back(Form<Part>::write(part));
    return g_variant_new_array(typeOf<Part>(), parts.data(), parts.size());
  }
};

template <class T>
struct Form<std::vector<T>> : ArrayForm<std::vector<T>, T> {};

template <class Key, class Value>
struct Form<std::pair<const Key, Value>> {
  static std::string signature() {
    return "{" + Form<Key>::signature() + Form<Value>::signature() + "}";
  }
  static std::pair<const Key, Value> read(GVariant* entry) {
    const auto key = Variant::taking(g_variant_get_child_value(entry, 0));
    const auto value = Variant::taking(g_variant_get_child_value(entry, 1));
    return {Form<Key>::read(key.get()), Form<Value>::read(value.get())};
  }
  static GVariant* write(const std::pair<const Key, Value>& entry) {
    return g_variant_new_dict_entry(Form<Key>::write(entry.first),
                                    Form<Value>::write(entry.second));
  }
};

/// Of two entries with the same key the first counts.
template <class Key, class Value>
struct Form<std::map<Key, Value>> : ArrayForm<std::map<Key, Value>, std::pair<const Key, Value>> {};

template <class... T>
struct Form<std::tuple<T...>> {
  static std::string signature() { return "(" + (Form<T>::signature() + ...) + ")"; }
  static std::tuple<T...> read(GVariant* tuple) {
    gsize place = 0;
    const auto next = [&] { return g_variant_get_child_value(tuple, place++); };
    // The parts of a list in braces are read in order.
    return std::tuple<T...>{Form<T>::read(Variant::taking(next()).get())...};
  }
  static GVariant* write(const std::tuple<T...>& tuple) {
    const auto make = [](const T&... parts) {
      const std::array<GVariant*, sizeof...(T)> children = {Form<T>::write(parts)...};
      return g_variant_new_tuple(children.data(), children.size());
    };
    return std::apply(make, tuple);
  }
};

}  // namespace ovinta::platform::linuxos::dbus
