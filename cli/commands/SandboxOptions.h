#pragma once

#include <string>

#include "sandbox/Sandbox.h"

namespace ovinta::cli {

/// What is asked of a sandbox that the command serves itself.
struct SandboxOptions {
  sandbox::Options service;
  /// Where to write a snapshot at the end; empty for nowhere.
  std::string snapshotFile;
  /// Tells of each request on standard error.
  bool verbose = false;
  /// JSON for programs instead of text for people.
  bool json = false;
};

/// The service as asked for, which tells of its requests where that is asked for. Throws
/// `std::runtime_error` when the file of the snapshot could not be written: at the end it would be
/// too late to learn it.
sandbox::Options serviceOptions(const SandboxOptions& options);

/// Starts the service; throws `std::runtime_error` where it cannot serve.
void startService(sandbox::Sandbox& service);

/// Writes the snapshot that is asked for, if any. Throws `std::runtime_error` where that fails.
void saveSnapshot(sandbox::Sandbox& service, const SandboxOptions& options);

}  // namespace ovinta::cli
