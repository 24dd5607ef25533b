#pragma once

#include "OvintaSDK/model/CreateCustomerInfo.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/LoginInfo.h"
#include "OvintaSDK/model/RequestPasswordReset.h"
#include "OvintaSDK/model/SetNewPassword.h"
#include "OvintaSDK/model/SignUpInfo.h"
#include "OvintaSDK/model/wire/RecordCoding.h"

namespace ovinta::wire {

template <>
struct WireTable<CustomerInfo> {
  static constexpr auto kFields = table(
      field("name", &CustomerInfo::name), field("car_type", &CustomerInfo::carType),
      field("car_color", &CustomerInfo::carColor),
      field("license_plate", &CustomerInfo::licensePlate), field("phone", &CustomerInfo::phone));
};

template <>
struct WireTable<Customer> {
  static constexpr auto kFields =
      table(flat(&Customer::info, WireTable<CustomerInfo>::kFields),
            field("email", &Customer::emailAddress), field("api_token", &Customer::token));
};

/// What the service answers with a customer.
struct CustomerResponse {
  CustomerPtr data;
};

template <>
struct WireTable<CustomerResponse> {
  static constexpr auto kFields = table(field("data", &CustomerResponse::data));
};

template <>
struct WireTable<CustomerConsent> {
  static constexpr auto kFields =
      table(field("terms_of_service", &CustomerConsent::termsOfService),
            field("age_verification", &CustomerConsent::ageVerification));
};

template <>
struct WireTable<CreateCustomerInfo> {
  static constexpr auto kFields =
      table(flat(&CreateCustomerInfo::customerInfo, WireTable<CustomerInfo>::kFields),
            flat(&CreateCustomerInfo::customerConsent, WireTable<CustomerConsent>::kFields));
};

template <>
struct WireTable<SignUpInfo> {
  static constexpr auto kFields =
      table(field("email", &SignUpInfo::emailAddress), field("password", &SignUpInfo::password),
            field("password_confirmation", &SignUpInfo::passwordConfirmation));
};

template <>
struct WireTable<LoginInfo> {
  static constexpr auto kFields =
      table(field("email", &LoginInfo::emailAddress), field("password", &LoginInfo::password));
};

template <>
struct WireTable<RequestPasswordReset> {
  static constexpr auto kFields = table(field("email", &RequestPasswordReset::email));
};

// The confirmation's key differs from the one of SignUpInfo, because the service's keys do.
template <>
struct WireTable<SetNewPassword> {
  static constexpr auto kFields =
      table(field("reset_password_token", &SetNewPassword::resetPasswordToken),
            field("password", &SetNewPassword::password),
            field("confirmation", &SetNewPassword::confirmation));
};

}  // namespace ovinta::wire
