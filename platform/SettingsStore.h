#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ovinta::platform {

/// The application's persistent key-value settings, texts only. May be used from any thread; a
/// written value is read back at once everywhere in the process. A value that cannot be made
/// permanent is kept in memory; the log and `failure` tell.
class SettingsStore {
 public:
  /// Texts by the keys to store them under; without a text the key's is removed.
  using Changes = std::map<std::string, std::optional<std::string>, std::less<>>;

  virtual ~SettingsStore() = default;

  /// The stored text, or else the registered default, or else absent.
  virtual std::optional<std::string> string(std::string_view key) const = 0;

  /// Stores the text under the key, in place of an earlier one.
  virtual void set(std::string_view key, std::string_view value) = 0;

  /// Removes the stored text; a registered default shows again.
  virtual void remove(std::string_view key) = 0;

  /// Makes all these changes as one: a process that dies meanwhile leaves all of them or none. A
  /// store without such a means makes them one after the other.
  virtual void apply(const Changes& changes) {
    for (const auto& [key, value] : changes) {
      if (value) {
        set(key, *value);
      } else {
        remove(key);
      }
    }
  }

  /// Removes the stored text of a secret as `remove` does, and with it whatever else of that text
  /// the store may have kept, such as a damaged file that it has set aside.
  virtual void wipe(std::string_view key) { remove(key); }

  /// What the store has failed to read, to make permanent or to wipe and not made up for since, and
  /// why: a sentence without any stored text. Absent while all is in place, and for a store that
  /// keeps nothing by design.
  virtual std::optional<std::string> failure() const { return std::nullopt; }

  /// Registers the text that `string` answers while none is stored. Not persistent; a later
  /// registration of the same key replaces it.
  virtual void registerDefault(std::string_view key, std::string_view value) = 0;
};

}  // namespace ovinta::platform
