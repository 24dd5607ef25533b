#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Activity.h"
#include "cli/client/ClientOptions.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// The exit codes of the command.
enum class ExitCode { success = 0, failure = 1, wrongUsage = 2, noCallback = 3 };

/// The library on the real platform, configured for one command. Used on the main thread.
class Client {
 public:
  /// Receives the result to print, absent for none, and the error, or null.
  using Report = std::function<void(std::optional<platform::Value>, ErrorPtr)>;

  explicit Client(ClientOptions options);

  /// Runs an operation to its end, that of all work it has started included, and prints what it
  /// reported. `reasonForSilence` says in words why it may never report.
  ExitCode perform(const std::function<void(Report)>& start, std::string_view reasonForSilence);

  /// Prints a result in the form asked for.
  void print(const platform::Value& result) const;

 private:
  void print(const OvintaError& error) const;

  ClientOptions options_;
  std::shared_ptr<Activity> activity_ = std::make_shared<Activity>();
};

}  // namespace ovinta::cli
