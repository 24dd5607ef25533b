#pragma once

namespace CLI {
class App;
}

namespace ovinta::cli {

struct SandboxOptions;

// Each function adds one sub-command, whose run sets the exit code of the process, an `ExitCode` or
// what a shell reports of a signal; of a failure it has written to standard error. `exitCode` must
// outlive the parsing.

void addConfigCommand(CLI::App& app, int& exitCode);
void addCustomerCommands(CLI::App& app, int& exitCode);
void addDemoCommand(CLI::App& app, int& exitCode);
void addDoctorCommand(CLI::App& app, int& exitCode);
void addMerchantCommands(CLI::App& app, int& exitCode);
void addNotifyCommands(CLI::App& app, int& exitCode);
void addOrderCommands(CLI::App& app, int& exitCode);
void addPushCommand(CLI::App& app, int& exitCode);
void addReplayCommand(CLI::App& app, int& exitCode);
void addSandboxCommand(CLI::App& app, int& exitCode);
void addSiteCommands(CLI::App& app, int& exitCode);
void addTrackCommand(CLI::App& app, int& exitCode);

/// Adds the commands of `ovinta orders` that make an order the customer's.
void addOrderMakingCommands(CLI::App& group, int& exitCode);

/// Adds the command of `ovinta orders` that shows what becomes of them.
void addWatchCommand(CLI::App& group, int& exitCode);

/// Adds the commands of `ovinta sandbox` that speak to one that runs.
void addSandboxToolCommands(CLI::App& group, int& exitCode);
/// Adds the one that runs another command with a sandbox of its own, which `options` describe;
/// they must outlive the parsing.
void addSandboxExecCommand(CLI::App& group, SandboxOptions& options, int& exitCode);

/// Adds what prints help, completion and manual page of all commands. `app` must outlive the
/// parsing.
void addManualCommands(CLI::App& app);

}  // namespace ovinta::cli
