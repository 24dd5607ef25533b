#include "cli/client/ClientOptions.h"

#include <CLI/CLI.hpp>

namespace ovinta::cli {

void addClientOptions(CLI::App& command, ClientOptions& options) {
  command.add_option("--base-url", options.baseURL, "The service's address; remembered");
  command.add_option("--token", options.token, "The app's API token")->capture_default_str();
  command.add_option("--app-version", options.appVersion, "The app's version")
      ->capture_default_str();
  command.add_option("--data-dir", options.dataDirectory, "Where customer and orders are kept");
  command.add_flag("--json", options.json, "Print one JSON document per result");
  command.add_flag("--verbose", options.verbose, "Show the library's log on standard error");
}

}  // namespace ovinta::cli
