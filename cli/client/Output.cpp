#include "cli/client/Output.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "cli/client/HumanText.h"
#include "cli/client/UnreadableAnswers.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;

constexpr std::string_view kUnknownCustomer =
    "should the service not know the customer that is kept, `ovinta customer logout` forgets them";

/// What is known beyond title and description.
Dictionary details(const OvintaError& error) {
  Dictionary fields;
  if (dynamic_cast<const OvintaErrorInvalidResponse*>(&error)) {
    if (const auto fault = lastUnreadableAnswer()) fields.emplace("reason", *fault);
  }
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
  if (refusal->statusCode() == HTTPStatusCode::unauthorized && Ovinta::customer().current()) {
    fields.emplace("hint", kUnknownCustomer);
  }
  return fields;
}

std::string coloredLine(std::string_view line, std::span<const WordColor> colors) {
  for (const auto& [word, color] : colors) {
    if (line.starts_with(word)) {
      return colored(word, color, STDOUT_FILENO).append(line.substr(word.size()));
    }
  }
  return std::string(line);
}

/// The text with the words in colour that begin a line.
std::string coloredLines(std::string_view text, std::span<const WordColor> colors) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines += coloredLine(text.substr(0, end), colors);
    text.remove_prefix(end);
  }
  return lines;
}

}  // namespace

Result::Result(platform::Value json) : value(std::move(json)), text(humanText(value)) {}

void complain(std::string_view sentence) { std::cerr << visibleText(sentence, true) << "\n"; }

void Output::print(const Result& result) const {
  std::cout << (json_ ? visibleJSON(result.value) + "\n"
                      : coloredLines(visibleText(result.text, true), result.colors))
            << std::flush;
}

void Output::print(const OvintaError& error) const {
  printError(details(error), error.title(), error.errorDescription());
}

void Output::printFailure(const std::string& title, const std::string& description) const {
  printError({}, title, description);
}

ExitCode Output::guard(const std::function<ExitCode()>& run) const {
  try {
    return run();
  } catch (const std::runtime_error& error) {
    printFailure("Command Failed", error.what());
    return ExitCode::failure;
  }
}

void Output::printError(Dictionary details, const std::string& title,
                        const std::string& description) const {
  if (json_) {
    details.emplace("title", title);
    details.emplace("description", description);
    std::cerr << visibleJSON(Dictionary{{"error", std::move(details)}}) << "\n";
  } else {
    std::cerr << colored(visibleText(title + ":", true), Color::red, STDERR_FILENO)
              << visibleText(" " + description, true) << "\n"
              << humanText(details);
  }
}

}  // namespace ovinta::cli
