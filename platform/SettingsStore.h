#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ovinta::platform {

/// The application's persistent key-value settings, texts only. May be used from any thread; a
/// written value is read back at once everywhere in the process. A value that cannot be made
/// permanent is logged and kept in memory.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// The stored text, or else the registered default, or else absent.
  virtual std::optional<std::string> string(std::string_view key) const = 0;

  /// Stores the text under the key, in place of an earlier one.
  virtual void set(std::string_view key, std::string_view value) = 0;

  /// Removes the stored text; a registered default shows again.
  virtual void remove(std::string_view key) = 0;

  /// Registers the text that `string` answers while none is stored. Not persistent; a later
  /// registration of the same key replaces it.
  virtual void registerDefault(std::string_view key, std::string_view value) = 0;
};

}  // namespace ovinta::platform
