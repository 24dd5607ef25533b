#include "cli/client/ClientOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "cli/client/ClientServices.h"
#include "cli/client/Secret.h"

namespace ovinta::cli {
std::string isNotEmpty(const std::string& text) { return text.empty() ? "is empty" : ""; }

void addServiceAddress(CLI::App& command, ClientOptions& options, const std::string& description) {
  command.add_option("--base-url", options.baseURL, description)
      ->check(isBaseURL)
      ->type_name("URL")
      ->envname(kBaseURLVariable)
      ->group(kCommonOptions);
  addSecretOption(command, "--token", options.token, "The app's API token", kTokenVariable)
      ->capture_default_str()
      ->group(kCommonOptions);
}

void addServiceOptions(CLI::App& command, ClientOptions& options) {
  addServiceAddress(command, options, "The service's address; remembered");
  command.add_option("--app-version", options.appVersion, "The app's version")
      ->capture_default_str()
      ->group(kCommonOptions);
  addOutputOptions(command, options);
}

void addJSONOption(CLI::App& command, bool& json) {
  command.add_flag("--json", json, "Print one JSON document per result")->group(kCommonOptions);
}

void addOutputOptions(CLI::App& command, ClientOptions& options) {
  addJSONOption(command, options.json);
  command.add_flag("--verbose", options.verbose, "Show the library's log on standard error")
      ->group(kCommonOptions);
}

void addClientOptions(CLI::App& command, ClientOptions& options) {
  addServiceOptions(command, options);
  addDataDirectoryOption(command, options);
}

void addDataDirectoryOption(CLI::App& command, ClientOptions& options) {
  command.add_option("--data-dir", options.dataDirectory, "Where customer and orders are kept")
      ->check(isNotEmpty)
      ->type_name("DIR")
      ->envname(kDataDirectoryVariable)
      ->group(kCommonOptions);
}

CLI::Option* addPositionSourceOption(CLI::App& command, platform::linuxos::PositionSource& source) {
  const auto& names = platform::linuxos::kPositionSourceNames;
  const auto choose = [&](const std::string& name) {
    source = static_cast<platform::linuxos::PositionSource>(std::ranges::find(names, name) -
                                                            names.begin());
  };
  return command
      .add_option_function<std::string>("--position-source", choose,
                                        "Where the app has its position from")
      ->check(CLI::IsMember(std::vector<std::string>(names.begin(), names.end())))
      ->default_str(std::string(names.front()));
}

std::string isBaseURL(const std::string& text) {
  // The variable is checked once for each command that there is.
  static const auto urls = valueServices().urls;
  for (const std::string scheme : {"http://", "https://"}) {
    const bool hasHost = text.starts_with(scheme) && text.size() > scheme.size() &&
                         std::string_view("/?#:@").find(text[scheme.size()]) == std::string::npos;
    if (hasHost && urls->parse(text)) return "";
  }
  return "\"" + text + "\" is no http or https address";
}

}  // namespace ovinta::cli
