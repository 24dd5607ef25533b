#include "cli/client/ClientCommands.h"
#include "cli/client/CustomerOptions.h"
#include "cli/client/Records.h"
#include "cli/client/Secret.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {
namespace {

constexpr const char* kPasswordVariable = "OVINTA_PASSWORD";

struct CustomerCreation {
  CustomerInfo info;
  CustomerConsent consent{.termsOfService = true, .ageVerification = true};
};

struct Account {
  std::string email;
  std::string password;
};

struct PasswordReset {
  std::string token;
  std::string password;
  std::string confirmation;
};

/// At its start the library finds a customer only whose vehicle is stored, with however empty
/// texts.
void storeVehicle() {
  for (const UserDefaultsKey& key :
       {UserDefaultsKey::customerVehicleType, UserDefaultsKey::customerVehicleColor,
        UserDefaultsKey::customerLicensePlate}) {
    if (!key.stringValue()) key.set("");
  }
}

ExitCode performCustomer(Client& client, const std::function<void(CustomerCallback)>& start) {
  const Outcome outcome = client.await([&](const Client::Report& report) {
    start([report](const CustomerPtr& customer, const ErrorPtr& error) {
      report(optionalResult(customer), error);
    });
  });
  if (outcome.result) storeVehicle();
  return client.report(outcome, kNoData);
}

void addAccountOptions(CLI::App& command, Account& account) {
  command.add_option("--email", account.email, "The account's e-mail address")->required();
  addSecretOption(command, "--password", account.password, "The account's password",
                  kPasswordVariable)
      ->required();
}

void addCustomerCreationOptions(CLI::App& command, CustomerCreation& creation) {
  addCustomerOptions(command, creation.info)->required();
  command.add_flag("--terms,!--no-terms", creation.consent.termsOfService,
                   "Consent to the terms of service (given unless refused)");
  command.add_flag("--age,!--no-age", creation.consent.ageVerification,
                   "Consent to the age verification (given unless refused)");
}

ExitCode createCustomer(Client& client, const CustomerCreation& creation) {
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().create(creation.info, creation.consent, std::move(callback));
  });
}

ExitCode updateCustomer(Client& client, CustomerInfo info) {
  const CustomerPtr customer = Ovinta::customer().current();
  if (customer && info.name.empty()) info.name = customer->info.name;
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().update(info, std::move(callback));
  });
}

ExitCode showCustomer(Client& client, const NoOptions& /*options*/) {
  if (const CustomerPtr customer = Ovinta::customer().current()) {
    client.output().print(resultOf(*customer));
    return ExitCode::success;
  }
  client.output().printFailure("No Customer", "The data directory holds none.");
  return ExitCode::failure;
}

ExitCode logOut(Client& client, const NoOptions& /*options*/) {
  Ovinta::customer().logout();
  refuseUnkept();
  client.output().print(done("No customer is kept."));
  return ExitCode::success;
}

void addDetailCommands(ClientCommands& commands) {
  commands.add<CustomerCreation>("create", "Create an anonymous customer",
                                 addCustomerCreationOptions, createCustomer);
  commands.add<CustomerInfo>("update", "Change the customer's details; what is left out stays",
                             addCustomerOptions, updateCustomer);
  commands.add<NoOptions>("show", "Show the customer that is kept", addNoOptions, showCustomer);
  commands.add<NoOptions>("logout", "Forget the customer", addNoOptions, logOut);
}

ExitCode logIn(Client& client, const Account& account) {
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().login(account.email, account.password, std::move(callback));
  });
}

ExitCode logInWithToken(Client& client, const std::string& token) {
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().loginWithToken(token, std::move(callback));
  });
}

ExitCode signUp(Client& client, const Account& account) {
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().signUp(account.email, account.password, std::move(callback));
  });
}

void addAccountCommands(ClientCommands& commands) {
  commands.add<Account>("login", "Log in by e-mail address and password", addAccountOptions, logIn);
  commands.add<std::string>(
      "login-token", "Log in by a customer's token",
      [](CLI::App& command, std::string& token) {
        addSecretOption(command, "customer-token", token, "The token of an earlier login",
                        "OVINTA_CUSTOMER_TOKEN")
            ->required();
      },
      logInWithToken);
  commands.add<Account>("sign-up", "Give the customer an e-mail address and a password",
                        addAccountOptions, signUp);
}

ExitCode requestPassword(Client& client, const std::string& email) {
  return client.perform(
      [&](const Client::Report& report) {
        Ovinta::customer().requestNewPassword(email, [report](const ErrorPtr& error) {
          reportDone(report, error, "The message is on its way.");
        });
      },
      kNoData);
}

void addResetOptions(CLI::App& command, PasswordReset& reset) {
  addSecretOption(command, "--reset-token", reset.token, "The token of the message")->required();
  addSecretOption(command, "--password", reset.password, "The new password", kPasswordVariable)
      ->required();
  addSecretOption(command, "--confirmation", reset.confirmation,
                  "The new password once more, for the service to compare; left out, the same")
      ->check(isNotEmpty);
}

ExitCode setPassword(Client& client, const PasswordReset& reset) {
  const std::string& confirmation =
      reset.confirmation.empty() ? reset.password : reset.confirmation;
  return performCustomer(client, [&](CustomerCallback callback) {
    Ovinta::customer().setNewPassword(reset.token, reset.password, confirmation,
                                      std::move(callback));
  });
}

void addPasswordCommands(ClientCommands& commands) {
  commands.add<std::string>(
      "request-password", "Have a message with a reset token sent",
      [](CLI::App& command, std::string& email) {
        command.add_option("--email", email, "The account's e-mail address")->required();
      },
      requestPassword);
  commands.add<PasswordReset>("set-password", "Set a new password with a reset token",
                              addResetOptions, setPassword);
}

}  // namespace

void addCustomerCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("customer", "The customer of this device");
  group->require_subcommand(1);
  ClientCommands commands(*group, exitCode);
  addDetailCommands(commands);
  addAccountCommands(commands);
  addPasswordCommands(commands);
}

}  // namespace ovinta::cli
