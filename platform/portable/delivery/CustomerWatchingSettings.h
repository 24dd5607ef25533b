#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/SettingsStore.h"
#include "platform/portable/delivery/ServiceRules.h"

namespace ovinta::platform::portable {

/// The settings of another store, which tells when the token of the customer was written or
/// removed.
class CustomerWatchingSettings final : public SettingsStore {
 public:
  /// `onCustomer` is called inside each call that touches the token, after the change.
  CustomerWatchingSettings(std::shared_ptr<SettingsStore> base, std::function<void()> onCustomer)
      : base_(std::move(base)), onCustomer_(std::move(onCustomer)) {}

  std::optional<std::string> string(std::string_view key) const override {
    return base_->string(key);
  }
  void set(std::string_view key, std::string_view value) override {
    base_->set(key, value);
    tell(key == kCustomerTokenSetting);
  }
  void remove(std::string_view key) override {
    base_->remove(key);
    tell(key == kCustomerTokenSetting);
  }
  void apply(const Changes& changes) override {
    base_->apply(changes);
    tell(changesCustomer(changes));
  }
  void wipe(std::string_view key) override {
    base_->wipe(key);
    tell(key == kCustomerTokenSetting);
  }
  std::optional<std::string> failure() const override { return base_->failure(); }
  void registerDefault(std::string_view key, std::string_view value) override {
    base_->registerDefault(key, value);
  }

 private:
  void tell(bool isTouched) const {
    if (isTouched) onCustomer_();
  }

  const std::shared_ptr<SettingsStore> base_;
  const std::function<void()> onCustomer_;
};

}  // namespace ovinta::platform::portable
