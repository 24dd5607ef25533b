#include "sandbox/domain/SnapshotFile.h"

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

/// The file that is written first, so that a failure leaves the old one whole.
std::string draftOf(const std::string& path) { return path + ".new"; }

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
  const std::string text = enveloped(
      "data", state.act([](const World& world, platform::Date) { return snapshotOf(world); }));
  const std::string draft = draftOf(path);
  std::ofstream file(draft, std::ios::binary | std::ios::trunc);
  std::error_code error;
  // Set while the file is empty, so that nobody else ever reads what it will hold.
  fs::permissions(draft, fs::perms::owner_read | fs::perms::owner_write, error);
  file << text << "\n";
  file.close();
  if (file && !error) fs::rename(draft, path, error);
  return file && !error ? std::nullopt : std::optional(path + " cannot be written");
}

std::optional<std::string> trySnapshotFile(const std::string& path) {
  std::error_code error;
  const bool isWritable =
      !fs::is_directory(path, error) && std::ofstream(draftOf(path), std::ios::app).is_open();
  if (!isWritable) return path + " cannot be written";
  fs::remove(draftOf(path), error);
  return std::nullopt;
}

}  // namespace ovinta::sandbox
