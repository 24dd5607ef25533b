#include "cli/client/Client.h"

#include <iostream>
#include <string>
#include <utility>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/HumanText.h"
#include "platform/JSON.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::Value;

struct Outcome {
  bool reported = false;
  std::optional<Value> result = {};
  ErrorPtr error = {};
};

/// What is known beyond title and description.
Dictionary details(const OvintaError& error) {
  Dictionary fields;
  const auto* refusal = dynamic_cast<const OvintaAPIError*>(&error);
  if (!refusal) return fields;
  if (const auto status = refusal->statusCode()) {
    fields.emplace("status", static_cast<int>(*status));
  }
  if (const auto& url = refusal->appUpgradeURL()) fields.emplace("appUpgradeURL", url->text);
  Dictionary errors;
  for (const auto& [field, messages] : refusal->errors().value_or(decltype(ErrorBody::errors){})) {
    errors.emplace(field, platform::List(messages.begin(), messages.end()));
  }
  if (!errors.empty()) fields.emplace("errors", std::move(errors));
  return fields;
}

Dictionary describe(const OvintaError& error) {
  Dictionary fields = details(error);
  fields.emplace("title", error.title());
  fields.emplace("description", error.errorDescription());
  return fields;
}

}  // namespace

Client::Client(ClientOptions options) : options_(std::move(options)) {
  platform::Services services = platform::linux::makeServices(
      {.applicationID = "ovinta", .dataDirectory = options_.dataDirectory});
  if (!options_.verbose) services.log = std::make_shared<platform::simulation::RecordingLog>();
  services.mainBundle = std::make_shared<platform::simulation::SimulatedBundle>(
      platform::simulation::SimulatedBundle::Texts{
          {"CFBundleShortVersionString", options_.appVersion}});
  services.operationQueues = counting(services.operationQueues, activity_);
  services.urlSession = counting(services.urlSession, activity_);
  platform::install(std::move(services));
  if (options_.baseURL) UserDefaultsKey::apiBase.set(*options_.baseURL);
  Ovinta::configure({{"token", options_.token}});
}

ExitCode Client::perform(const std::function<void(Report)>& start,
                         std::string_view reasonForSilence) {
  const auto outcome = std::make_shared<Guarded<Outcome>>();
  start([outcome](std::optional<Value> result, ErrorPtr error) {
    outcome->set({.reported = true, .result = std::move(result), .error = std::move(error)});
  });
  activity_->waitUntilIdle();
  const Outcome end = outcome->get();
  if (!end.reported) {
    std::cerr << "No answer comes, by design: " << reasonForSilence << "\n";
    return ExitCode::noCallback;
  }
  if (end.error) {
    print(*end.error);
    return ExitCode::failure;
  }
  if (end.result) print(*end.result);
  return ExitCode::success;
}

void Client::print(const Value& result) const {
  std::cout << (options_.json ? platform::writeJSON(result) + "\n" : humanText(result));
}

void Client::print(const OvintaError& error) const {
  if (options_.json) {
    std::cerr << platform::writeJSON(Dictionary{{"error", describe(error)}}) << "\n";
  } else {
    std::cerr << error.title() << ": " << error.errorDescription() << "\n"
              << humanText(details(error));
  }
}

}  // namespace ovinta::cli
