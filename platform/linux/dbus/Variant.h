#pragma once

#include <glib.h>

#include <utility>

namespace ovinta::platform::linuxos::dbus {

/// A value of any type as it travels over D-Bus, or none. A plain value, which is never changed:
/// copies share it.
class Variant {
 public:
  /// No value.
  Variant() = default;

  /// Takes over the caller's reference, also a floating one; null for no value.
  static Variant taking(GVariant* value) {
    Variant made;
    if (value) made.value_ = g_variant_take_ref(value);
    return made;
  }
  /// Adds a reference of its own, and takes over a floating one; null for no value.
  static Variant sharing(GVariant* value) {
    Variant made;
    if (value) made.value_ = g_variant_ref_sink(value);
    return made;
  }

  Variant(const Variant& other) : value_(other.value_ ? g_variant_ref(other.value_) : nullptr) {}
  Variant(Variant&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() {
    if (value_) g_variant_unref(value_);
  }

  /// GLib's own form, which lives as long as this does; null for no value.
  GVariant* get() const { return value_; }
  explicit operator bool() const { return value_ != nullptr; }

 private:
  GVariant* value_ = nullptr;
};

}  // namespace ovinta::platform::linuxos::dbus
