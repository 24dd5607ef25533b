#pragma once

namespace CLI {
class App;
}

namespace ovinta::cli {

// Each function adds one sub-command, whose run sets the exit code of the process: 0 for success, 1
// for a failure, about which it has written to standard error. `exitCode` must outlive the parsing.

void addConfigCommand(CLI::App& app, int& exitCode);
void addCustomerCommands(CLI::App& app, int& exitCode);
void addDemoCommand(CLI::App& app, int& exitCode);
void addOrderCommands(CLI::App& app, int& exitCode);
void addSandboxCommand(CLI::App& app, int& exitCode);
void addSiteCommands(CLI::App& app, int& exitCode);

}  // namespace ovinta::cli
