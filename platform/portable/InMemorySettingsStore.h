#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/SettingsStore.h"

namespace ovinta::platform::portable {

/// Settings that last as long as the object; also the cache of a store that makes them permanent.
class InMemorySettingsStore : public SettingsStore {
 public:
  std::optional<std::string> string(std::string_view key) const override;
  void set(std::string_view key, std::string_view value) override;
  void remove(std::string_view key) override;
  void apply(const Changes& changes) override;
  void registerDefault(std::string_view key, std::string_view value) override;

  /// The text stored under the key, registered defaults left aside.
  std::optional<std::string> stored(std::string_view key) const;
  /// The keys that have a stored text.
  std::vector<std::string> storedKeys() const;

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  using Texts = std::unordered_map<std::string, std::string, Hash, std::equal_to<>>;

  static std::optional<std::string> find(const Texts& texts, std::string_view key);
  static void put(Texts& texts, std::string_view key, std::string_view value);
  static void erase(Texts& texts, std::string_view key);

  mutable std::mutex mutex_;
  Texts values_;
  Texts defaults_;
};

}  // namespace ovinta::platform::portable
