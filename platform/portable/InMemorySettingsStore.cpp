#include "platform/portable/InMemorySettingsStore.h"

#include "platform/portable/Portable.h"

namespace ovinta::platform::portable {

std::optional<std::string> InMemorySettingsStore::find(const Texts& texts, std::string_view key) {
  const auto entry = texts.find(key);
  if (entry == texts.end()) return std::nullopt;
  return entry->second;
}

void InMemorySettingsStore::put(Texts& texts, std::string_view key, std::string_view value) {
  const auto entry = texts.find(key);
  if (entry == texts.end()) {
    texts.emplace(key, value);
  } else {
    entry->second = value;
  }
}

void InMemorySettingsStore::erase(Texts& texts, std::string_view key) {
  if (const auto entry = texts.find(key); entry != texts.end()) texts.erase(entry);
}

std::optional<std::string> InMemorySettingsStore::string(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  auto value = find(values_, key);
  return value ? value : find(defaults_, key);
}

std::optional<std::string> InMemorySettingsStore::stored(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  return find(values_, key);
}

void InMemorySettingsStore::set(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mutex_);
  put(values_, key, value);
}

void InMemorySettingsStore::remove(std::string_view key) {
  const std::lock_guard lock(mutex_);
  erase(values_, key);
}

void InMemorySettingsStore::apply(const Changes& changes) {
  const std::lock_guard lock(mutex_);
  for (const auto& [key, value] : changes) {
    if (value) {
      put(values_, key, *value);
    } else {
      erase(values_, key);
    }
  }
}

void InMemorySettingsStore::registerDefault(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mutex_);
  put(defaults_, key, value);
}

std::vector<std::string> InMemorySettingsStore::storedKeys() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> keys;
  keys.reserve(values_.size());
  for (const auto& [key, value] : values_) keys.push_back(key);
  return keys;
}

std::shared_ptr<SettingsStore> makeInMemorySettingsStore() {
  return std::make_shared<InMemorySettingsStore>();
}

}  // namespace ovinta::platform::portable
