#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "../../platform/Export.h"
#include "../../platform/SettingsStore.h"

namespace ovinta {

/// A key under which the library keeps a text in the settings store. There are nine; keys compare
/// by their text. All operations work on the installed settings store and may be called from any
/// thread.
class OVINTA_EXPORT UserDefaultsKey {
 public:
  /// What is kept of the signed-in customer: the token, a secret; then the fields of the customer
  /// as they came from the service. A logout removes the token alone.
  static const UserDefaultsKey customerToken;
  static const UserDefaultsKey customerName;
  static const UserDefaultsKey customerEmail;
  static const UserDefaultsKey customerVehicleType;
  static const UserDefaultsKey customerVehicleColor;
  static const UserDefaultsKey customerLicensePlate;
  static const UserDefaultsKey customerPhone;
  /// The base URL of the service; an application may store its own to point the library elsewhere.
  static const UserDefaultsKey apiBase;
  /// The location permission last reported to the service: the decimal number of a
  /// `platform::AuthorizationStatus`. For the library's own use.
  static const UserDefaultsKey lastKnownAuthStatus;

  /// The key whose text is `rawValue`, compared exactly; absent when none of the nine is.
  static std::optional<UserDefaultsKey> fromRawValue(std::string_view rawValue);

  /// The key in the settings store.
  std::string_view rawValue() const { return rawValue_; }

  /// The stored text, or the registered default, or absent.
  std::optional<std::string> stringValue() const;
  /// True exactly when the text is "YES".
  bool boolValue() const;

  /// Stores the text; an absent one removes the entry.
  void set(const std::optional<std::string>& value) const;
  /// Stores "YES" or "NO".
  void setBool(bool value) const;
  /// Removes the stored text; a registered default shows again.
  void remove() const;

  friend constexpr bool operator==(UserDefaultsKey, UserDefaultsKey) = default;

 private:
  constexpr explicit UserDefaultsKey(std::string_view rawValue) : rawValue_(rawValue) {}
  static const std::array<UserDefaultsKey, 9>& all();

  std::string_view rawValue_;
};

/// The text stored under the key in a store of the caller's choice, or its registered default, or
/// absent. May be called from any thread.
OVINTA_EXPORT std::optional<std::string> stringForKey(const platform::SettingsStore& store,
                                                      UserDefaultsKey key);

}  // namespace ovinta

template <>
struct std::hash<ovinta::UserDefaultsKey> {
  std::size_t operator()(ovinta::UserDefaultsKey key) const noexcept {
    return std::hash<std::string_view>()(key.rawValue());
  }
};
