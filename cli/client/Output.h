#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Color.h"
#include "cli/client/ExitCode.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// A word and the colour that it has where it begins a line.
using WordColor = std::pair<std::string_view, Color>;

/// A result to print: for programs and for people.
struct Result {
  Result(platform::Value json, std::string text, std::span<const WordColor> colors = {})
      : value(std::move(json)), text(std::move(text)), colors(colors) {}
  /// A result that people get with an entry per line.
  explicit Result(platform::Value json);

  platform::Value value;
  std::string text;
  std::span<const WordColor> colors;
};

/// What is left to say when an operation without a result has succeeded.
inline Result done(const std::string& sentence) {
  return {platform::Dictionary{{"done", sentence}}, sentence + "\n"};
}

/// A line on standard error that says why the whole command comes to nothing.
void complain(std::string_view sentence);

/// Prints in the form asked for: results to standard output, errors to standard error.
class Output {
 public:
  explicit Output(bool json) : json_(json) {}

  void print(const Result& result) const;
  /// Prints title and description, and what else is known: status, upgrade link, fields at fault,
  /// what makes an answer invalid, a way out.
  void print(const OvintaError& error) const;
  /// Prints a failure that is none of the library's in the same form.
  void printFailure(const std::string& title, const std::string& description) const;

  /// Runs a command; what it throws of `std::runtime_error` is printed as its failure.
  ExitCode guard(const std::function<ExitCode()>& run) const;

 private:
  void printError(platform::Dictionary details, const std::string& title,
                  const std::string& description) const;

  bool json_;
};

}  // namespace ovinta::cli
