#include "sandbox/domain/SnapshotFile.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "sandbox/domain/Envelope.h"
#include "sandbox/domain/Snapshot.h"

namespace ovinta::sandbox {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> textOf(const std::string& path) {
  std::error_code error;
  // A stream that reads a directory throws.
  if (!fs::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  return file ? std::optional(std::move(text)) : std::nullopt;
}

/// The file that a path leads to by symbolic links, which stay.
std::string targetOf(const std::string& path) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(path, error);
  return error ? path : target.string();
}

/// The file that is written first, so that a failure leaves the old one whole.
std::string draftOf(const std::string& path) { return targetOf(path) + ".new"; }

/// Whether the path leads to a device or a pipe, in whose place no file can be put.
bool isStream(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error) && !fs::is_regular_file(path, error);
}

bool tryWriting(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(path, error)) return false;
  if (isStream(path)) return ::access(path.c_str(), W_OK) == 0;
  const bool isWritable = std::ofstream(draftOf(path), std::ios::app).is_open();
  fs::remove(draftOf(path), error);
  return isWritable;
}

std::string sentence(const std::string& path, const Refusal& refusal) {
  std::string text = path + " is no valid snapshot";
  const char* separator = ": ";
  for (const auto& [field, messages] : refusal.errors) {
    text.append(separator).append(field).append(" (");
    text.append(*messages.as<platform::List>()->front().as<std::string>()).append(")");
    separator = ", ";
  }
  return text;
}

}  // namespace

std::optional<std::string> readSnapshotFile(const std::string& path, SandboxState& state) {
  const auto text = textOf(path);
  if (!text) return path + " cannot be read";
  const Outcome data = dataOf(*text);
  if (!data) return sentence(path, data.error());
  const auto refused = state.restore(*data);
  return refused ? std::optional(sentence(path, *refused)) : std::nullopt;
}

std::optional<std::string> writeSnapshotFile(const std::string& path, SandboxState& state) {
  return writePrivateFile(path, enveloped("data", state.act([](const World& world, platform::Date) {
                                  return snapshotOf(world);
                                })) +
                                    "\n");
}

std::optional<std::string> writePrivateFile(const std::string& path, const std::string& text) {
  const bool replaces = !isStream(path);
  const std::string draft = replaces ? draftOf(path) : path;
  std::ofstream file(draft, std::ios::binary | std::ios::trunc);
  std::error_code error;
  // Set while the file is empty, so that nobody else ever reads what it will hold.
  if (replaces) fs::permissions(draft, fs::perms::owner_read | fs::perms::owner_write, error);
  file << text;
  file.close();
  if (file && !error && replaces) fs::rename(draft, targetOf(path), error);
  return file && !error ? std::nullopt : std::optional(path + " cannot be written");
}

std::optional<std::string> trySnapshotFile(const std::string& path) {
  return tryWriting(path) ? std::nullopt : std::optional(path + " cannot be written");
}

}  // namespace ovinta::sandbox
