#include "sandbox/domain/Accounts.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::Value;

constexpr std::size_t kTokenLength = 32;
constexpr std::string_view kTokenAlphabet = "0123456789abcdef";
constexpr std::size_t kLeastPasswordLength = 6;

Complaint checkEmail(const Value& value) {
  const auto* text = value.as<std::string>();
  const std::size_t at = text ? text->find('@') : std::string::npos;
  const bool sound = at != std::string::npos && at > 0 && at + 1 < text->size() &&
                     text->find('@', at + 1) == std::string::npos &&
                     text->find_first_of(" \t\r\n") == std::string::npos;
  return sound ? std::nullopt : Complaint("is no e-mail address");
}

/// The length of a text in characters of UTF-8.
std::size_t length(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

Complaint checkPassword(const Value& value) {
  const auto* text = value.as<std::string>();
  return text && length(*text) >= kLeastPasswordLength
             ? std::nullopt
             : Complaint("must have at least 6 characters");
}

/// A customer's details first, then what only some requests and records have.
constexpr std::array<FieldRule, 9> kCustomerRules = {{{"name", checkFilledText, true},
                                                      {"car_type", checkText},
                                                      {"car_color", checkText},
                                                      {"license_plate", checkText},
                                                      {"phone", checkText},
                                                      {"api_token", checkFilledText},
                                                      {"email", checkEmail},
                                                      {"password", checkPassword},
                                                      {"reset_password_token", checkFilledText}}};
constexpr auto kDetailRules = std::span(kCustomerRules).first<5>();

constexpr std::array<FieldRule, 2> kConsentRules = {
    {{"terms_of_service", checkConsent, true}, {"age_verification", checkConsent, true}}};

constexpr std::array<FieldRule, 3> kSignUpRules = {{{"email", checkEmail, true},
                                                    {"password", checkPassword, true},
                                                    {"password_confirmation", checkText, true}}};

constexpr std::array<FieldRule, 2> kSignInRules = {
    {{"email", checkText, true}, {"password", checkText, true}}};

constexpr std::array<FieldRule, 1> kResetRequestRules = {{{"email", checkEmail, true}}};

constexpr std::array<FieldRule, 3> kNewPasswordRules = {{{"reset_password_token", checkText, true},
                                                         {"password", checkPassword, true},
                                                         {"confirmation", checkText, true}}};

/// A customer's place among all; absent for a text that no customer is found by.
using Place = std::optional<std::size_t>;

Place placeOf(const Index<std::size_t>& index, std::string_view text) {
  const auto found = index.find(text);
  return found == index.end() ? std::nullopt : std::optional(found->second);
}

Place placeByAddress(const World& world, std::string_view email) {
  return placeOf(world.customersByAddress, inLowerCase(email));
}

/// A field that customers are found by, and the index that leads from its text to their places.
struct IndexedKey {
  std::string_view key;
  Index<std::size_t> World::*index;
  bool ignoresCase = false;
};

constexpr std::array<IndexedKey, 3> kIndexedKeys = {
    {{"api_token", &World::customersByToken},
     {"reset_password_token", &World::customersByResetToken},
     {"email", &World::customersByAddress, true}}};

/// The text under which the index of that key lists the customer; absent for a customer without the
/// field.
std::optional<std::string> indexText(const Dictionary& customer, const IndexedKey& key) {
  const auto* text = platform::find<std::string>(customer, key.key);
  if (!text) return std::nullopt;
  return key.ignoresCase ? inLowerCase(*text) : *text;
}

/// Changes the customer at that place, who is then found by the new texts in place of the old ones.
template <class Change>
const Dictionary& change(World& world, std::size_t place, Change make) {
  Dictionary& customer = world.customers[place];
  for (const IndexedKey& key : kIndexedKeys) {
    if (const auto text = indexText(customer, key)) (world.*key.index).erase(*text);
  }
  make(customer);
  for (const IndexedKey& key : kIndexedKeys) {
    if (auto text = indexText(customer, key)) (world.*key.index).emplace(*std::move(text), place);
  }
  return customer;
}

const Dictionary& add(World& world, Dictionary customer) {
  world.customers.emplace_back();
  return change(world, world.customers.size() - 1,
                [&](Dictionary& added) { added = std::move(customer); });
}

std::string newToken(World& world) { return world.generator.text(kTokenLength, kTokenAlphabet); }

/// The complaints about the fields, among them that a password is not confirmed.
Dictionary passwordErrors(const Dictionary& info, std::span<const FieldRule> rules,
                          std::string_view confirmationKey) {
  Dictionary errors = fieldErrors(info, rules);
  if (!errors.contains("password") && !errors.contains(confirmationKey) &&
      textOf(info, "password") != textOf(info, confirmationKey)) {
    errors.emplace(confirmationKey,
                   platform::List{fieldMessage(confirmationKey, "is not the password")});
  }
  return errors;
}

}  // namespace

const Dictionary* findCustomer(const World& world, std::string_view token) {
  const Place place = placeOf(world.customersByToken, token);
  return place ? &world.customers[*place] : nullptr;
}

Dictionary shownCustomer(Dictionary customer) {
  customer.erase("reset_password_token");
  customer.erase("password");
  return customer;
}

platform::List inspectedCustomers(const World& world) {
  platform::List list;
  for (Dictionary customer : world.customers) {
    customer.erase("password");
    list.emplace_back(std::move(customer));
  }
  return list;
}

Outcome createCustomer(World& world, const Dictionary& info) {
  Dictionary errors = fieldErrors(info, kDetailRules);
  errors.merge(fieldErrors(info, kConsentRules));
  if (auto refused = invalid(std::move(errors))) return *std::move(refused);
  Dictionary customer;
  copyFields(info, kDetailRules, customer);
  customer.emplace("api_token", newToken(world));
  return shownCustomer(add(world, std::move(customer)));
}

Outcome updateCustomer(World& world, std::string_view token, const Dictionary& info) {
  if (auto refused = invalid(fieldErrors(info, kDetailRules))) return *std::move(refused);
  const Place place = placeOf(world.customersByToken, token);
  return shownCustomer(change(
      world, *place, [&](Dictionary& customer) { copyFields(info, kDetailRules, customer); }));
}

Outcome signUp(World& world, std::string_view token, const Dictionary& info) {
  if (auto refused = invalid(passwordErrors(info, kSignUpRules, "password_confirmation")))
    return *std::move(refused);
  const Place place = placeOf(world.customersByToken, token);
  if (world.customers[*place].contains("email")) {
    return invalid("email", "of this customer is set already");
  }
  if (placeByAddress(world, textOf(info, "email"))) return invalid("email", "is taken");
  return shownCustomer(change(world, *place, [&](Dictionary& customer) {
    copyFields(info, std::span(kSignUpRules).first<2>(), customer);
  }));
}

Outcome signIn(const World& world, const Dictionary& info) {
  if (auto refused = invalid(fieldErrors(info, kSignInRules))) return *std::move(refused);
  const Place place = placeByAddress(world, textOf(info, "email"));
  if (place && textOf(world.customers[*place], "password") == textOf(info, "password")) {
    return shownCustomer(world.customers[*place]);
  }
  return refusal(Refusal::Kind::unauthorized, "password",
                 fieldMessage("password", "or e-mail address is wrong"));
}

Outcome requestPasswordReset(World& world, const Dictionary& info) {
  if (auto refused = invalid(fieldErrors(info, kResetRequestRules))) return *std::move(refused);
  if (const Place place = placeByAddress(world, textOf(info, "email"))) {
    change(world, *place, [token = newToken(world)](Dictionary& changed) {
      changed.insert_or_assign("reset_password_token", token);
    });
  }
  return Dictionary{};
}

Outcome setNewPassword(World& world, const Dictionary& info) {
  if (auto refused = invalid(passwordErrors(info, kNewPasswordRules, "confirmation")))
    return *std::move(refused);
  const Place place = placeOf(world.customersByResetToken, textOf(info, "reset_password_token"));
  if (!place) return invalid("reset_password_token", "is unknown or used");
  return shownCustomer(change(world, *place, [&](Dictionary& customer) {
    customer.erase("reset_password_token");
    customer.insert_or_assign("password", textOf(info, "password"));
  }));
}

std::span<const FieldRule> customerRules() { return kCustomerRules; }

std::optional<Refusal> restoreCustomer(World& world, Dictionary customer) {
  if (customer.contains("email") != customer.contains("password")) {
    return invalid("email", "and password belong together");
  }
  if (!customer.contains("api_token")) customer.emplace("api_token", newToken(world));
  for (const IndexedKey& key : kIndexedKeys) {
    const auto text = indexText(customer, key);
    if (text && (world.*key.index).contains(*text)) return invalid(key.key, "is taken");
  }
  add(world, std::move(customer));
  return std::nullopt;
}

}  // namespace ovinta::sandbox
