#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "../Bundle.h"

namespace ovinta::platform::simulation {

/// A bundle that holds what the test puts into it. May be used from any thread.
class SimulatedBundle : public Bundle {
 public:
  /// Texts by their keys.
  using Texts = std::map<std::string, std::string, std::less<>>;

  /// A bundle with that info dictionary and no resources.
  explicit SimulatedBundle(Texts info = {}) : info_(std::move(info)) {}

  std::optional<std::string> infoText(std::string_view key) const override {
    const std::lock_guard lock(mutex_);
    return find(info_, key);
  }

  std::optional<std::string> resource(std::string_view name, std::string_view type) const override {
    const std::lock_guard lock(mutex_);
    return find(resources_, fileName(name, type));
  }

  /// Puts an entry into the info dictionary, in place of an earlier one.
  void setInfoText(std::string_view key, std::string text) {
    const std::lock_guard lock(mutex_);
    info_.insert_or_assign(std::string(key), std::move(text));
  }

  /// Puts a resource into the bundle, in place of an earlier one; the content is bytes.
  void setResource(std::string_view name, std::string_view type, std::string content) {
    const std::lock_guard lock(mutex_);
    resources_.insert_or_assign(fileName(name, type), std::move(content));
  }

 private:
  static std::optional<std::string> find(const Texts& texts, std::string_view key) {
    const auto entry = texts.find(key);
    return entry == texts.end() ? std::nullopt : std::optional(entry->second);
  }
  static std::string fileName(std::string_view name, std::string_view type) {
    return std::string(name) + "." + std::string(type);
  }

  mutable std::mutex mutex_;
  Texts info_;
  Texts resources_;
};

}  // namespace ovinta::platform::simulation
