#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/Linux.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace ovinta::cli {

/// The group of the options that many commands share. They may stand before the command, too.
inline constexpr const char* kCommonOptions = "Common options";

/// The environment variables that take the place of `--base-url`, `--data-dir` and `--token`.
inline constexpr const char* kBaseURLVariable = "OVINTA_BASE_URL";
inline constexpr const char* kDataDirectoryVariable = "OVINTA_DATA_DIR";
inline constexpr const char* kTokenVariable = "OVINTA_TOKEN";

/// What every command that works as a client of the service understands.
struct ClientOptions {
  /// Kept in the data directory for later calls.
  std::optional<std::string> baseURL = {};
  std::string token = "ovinta-command";
  std::string appVersion = "1.0";
  /// Absent: the one that applications have by default.
  std::optional<std::filesystem::path> dataDirectory = {};
  /// One JSON document per result instead of text for people.
  bool json = false;
  /// Shows the library's log on standard error.
  bool verbose = false;
};

/// Adds all options but the one of the data directory; `options` must outlive the parsing.
void addServiceOptions(CLI::App& command, ClientOptions& options);

/// Each adds a part of the options: address, described as told, and app token; output; data
/// directory. `options` must outlive the parsing.
void addServiceAddress(CLI::App& command, ClientOptions& options, const std::string& description);
void addOutputOptions(CLI::App& command, ClientOptions& options);
void addDataDirectoryOption(CLI::App& command, ClientOptions& options);

/// Adds the flag that asks for JSON; `json` must outlive the parsing.
void addJSONOption(CLI::App& command, bool& json);

/// Adds the choice of where positions come from; `source` must outlive the parsing.
CLI::Option* addPositionSourceOption(CLI::App& command, platform::linuxos::PositionSource& source);

/// Adds all options; `options` must outlive the parsing.
void addClientOptions(CLI::App& command, ClientOptions& options);

/// What is wrong with an empty text; nothing, an empty text, for all others.
std::string isNotEmpty(const std::string& text);

/// What is wrong with a text that cannot be a service's address; empty for all others.
std::string isBaseURL(const std::string& text);

}  // namespace ovinta::cli
