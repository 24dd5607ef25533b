#pragma once

#include <optional>
#include <string>

#include "sandbox/domain/SandboxState.h"

namespace ovinta::sandbox {

// A file holds a snapshot as the service answers and takes it. The functions answer what went
// wrong as a sentence, having changed nothing then, or absent when nothing did.

/// Puts what the file holds in place of all that is known.
[[nodiscard]] std::optional<std::string> readSnapshotFile(const std::string& path,
                                                          SandboxState& state);

/// Writes all that is known, passwords and tokens included, to a file that only its owner may read.
[[nodiscard]] std::optional<std::string> writeSnapshotFile(const std::string& path,
                                                           SandboxState& state);

/// Writes the text of a snapshot to such a file, in place of one that is there.
[[nodiscard]] std::optional<std::string> writePrivateFile(const std::string& path,
                                                          const std::string& text);

/// Tries whether such a file could be written, without touching one that is there.
[[nodiscard]] std::optional<std::string> trySnapshotFile(const std::string& path);

}  // namespace ovinta::sandbox
