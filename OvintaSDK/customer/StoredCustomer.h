#pragma once

#include <memory>

#include "OvintaSDK/model/Customer.h"
#include "platform/SettingsStore.h"

namespace ovinta {

/// The customer kept in the settings store; null when one of name, vehicle type, vehicle colour,
/// licence plate and token is missing. May be called from any thread, as the others here.
CustomerPtr loadStoredCustomer(const platform::SettingsStore& settings);

/// Keeps the customer, as a whole or not at all; absent fields remove what was stored under their
/// keys.
void storeCustomer(const Customer& customer, platform::SettingsStore& settings);

/// Forgets the token alone, wherever the store has it: name and vehicle stay, to prefill a later
/// login.
void forgetStoredToken(platform::SettingsStore& settings);

}  // namespace ovinta
