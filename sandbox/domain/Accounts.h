#pragma once

#include <span>
#include <string_view>

#include "sandbox/domain/Refusal.h"
#include "sandbox/domain/Validation.h"
#include "sandbox/domain/World.h"

namespace ovinta::sandbox {

// The rules of customers' accounts. Where a customer is answered, it is as apps get to see it.

/// The kept record of the customer; null when the token is nobody's.
const platform::Dictionary* findCustomer(const World& world, std::string_view token);

/// The record without password and reset token.
platform::Dictionary shownCustomer(platform::Dictionary customer);

/// All customers as testers get to see them: everything but the passwords.
platform::List inspectedCustomers(const World& world);

Outcome createCustomer(World& world, const platform::Dictionary& info);

// The token must be a customer's of that world.

Outcome updateCustomer(World& world, std::string_view token, const platform::Dictionary& info);
/// Gives an anonymous customer an e-mail address and a password.
Outcome signUp(World& world, std::string_view token, const platform::Dictionary& info);

Outcome signIn(const World& world, const platform::Dictionary& info);

/// Makes a token that sets a new password once, in place of an earlier one. Answers an empty record
/// whether or not the address is known, so as not to tell.
Outcome requestPasswordReset(World& world, const platform::Dictionary& info);
Outcome setNewPassword(World& world, const platform::Dictionary& info);

/// What a kept record must and may hold.
std::span<const FieldRule> customerRules();

/// Adds a record that keeps to the rules, with a new token when it has none; or tells what speaks
/// against it and adds nothing.
[[nodiscard]] std::optional<Refusal> restoreCustomer(World& world, platform::Dictionary customer);

}  // namespace ovinta::sandbox
