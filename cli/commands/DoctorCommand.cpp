#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/client/ClientOptions.h"
#include "cli/client/ClientServices.h"
#include "cli/client/HumanText.h"
#include "cli/client/Output.h"
#include "cli/client/Table.h"
#include "cli/client/Waiting.h"
#include "cli/commands/Commands.h"
#include "platform/linux/Diagnosis.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::linuxos::Condition;
using platform::linuxos::Finding;

struct DoctorOptions {
  ClientOptions client;
  std::string applicationID{kApplicationID};
  platform::linuxos::PositionSource positionSource = platform::linuxos::PositionSource::automatic;
};

platform::linuxos::Options optionsFor(const DoctorOptions& options) {
  return {.applicationID = options.applicationID,
          .dataDirectory = options.client.dataDirectory,
          .log = logFor(options.client),
          .positionSource = options.positionSource};
}

Dictionary fieldsOf(const Finding& finding) {
  Dictionary fields{{"subject", finding.subject},
                    {"condition", name(finding.condition)},
                    {"detail", finding.detail}};
  if (!finding.version.empty()) fields.emplace("version", finding.version);
  if (!finding.advice.empty()) fields.emplace("advice", finding.advice);
  return fields;
}

constexpr auto kConditionColors = std::to_array<WordColor>({
    {name(Condition::good), Color::green},
    {name(Condition::limited), Color::yellow},
    {name(Condition::missing), Color::red},
    {name(Condition::unknown), Color::yellow},
});

/// A table with what to do beneath each row.
Result resultOfFindings(const std::vector<Finding>& findings) {
  platform::List rows;
  for (const Finding& finding : findings) rows.emplace_back(fieldsOf(finding));
  const auto lines = tableLines(
      {{"STATE", "condition"}, {"PART", "subject"}, {"VERSION", "version"}, {"FOUND", "detail"}},
      rows);
  std::string text = lines.front() + "\n";
  for (std::size_t i = 0; i < findings.size(); ++i) {
    text += lines.at(i + 1) + "\n";
    const std::string& advice = findings[i].advice;
    if (!advice.empty()) text += "         " + visibleText(advice) + "\n";
  }
  return {std::move(rows), std::move(text), kConditionColors};
}

std::vector<Finding> diagnosis(const DoctorOptions& options) {
  const Waiting waiting("Waiting for the system's services");
  std::vector<Finding> findings;
  platform::linuxos::diagnose(optionsFor(options), [&findings](const std::vector<Finding>& found) {
    findings = found;
    platform::linuxos::quitMainLoop();
  });
  platform::linuxos::runMainLoop();
  return findings;
}

ExitCode examine(const DoctorOptions& options) {
  const std::vector<Finding> findings = diagnosis(options);
  Output(options.client.json).print(resultOfFindings(findings));
  const bool isFit = std::ranges::all_of(findings, [](const Finding& finding) {
    return finding.condition == Condition::good || finding.condition == Condition::limited;
  });
  return isFit ? ExitCode::success : ExitCode::failure;
}

}  // namespace

void addDoctorCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<DoctorOptions>();
  CLI::App* command = app.add_subcommand(
      "doctor", "Check what the library uses on this device, and say what to do about the rest");
  command
      ->add_option("--application-id", options->applicationID,
                   "Check as this app, which the services know by its desktop file")
      ->type_name("ID")
      ->capture_default_str();
  addPositionSourceOption(*command, options->positionSource);
  addDataDirectoryOption(*command, options->client);
  addOutputOptions(*command, options->client);
  command->callback([options, &exitCode] {
    exitCode =
        static_cast<int>(Output(options->client.json).guard([&] { return examine(*options); }));
  });
}

}  // namespace ovinta::cli
