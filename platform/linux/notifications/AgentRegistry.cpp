#include "platform/linux/notifications/AgentRegistry.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "platform/JSON.h"
#include "platform/linux/storage/PrivateDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr const char* kApplicationID = "applicationID";
constexpr const char* kStore = "store";
constexpr const char* kPositionSource = "positionSource";

/// A short name that stands for the store.
std::string keyOf(const RegisteredApplication& application) {
  const boost::uuids::name_generator_sha1 generate(boost::uuids::ns::url());
  std::string key = to_string(generate("file://" + application.store.string()));
  std::erase(key, '-');
  return key;
}

/// Writes the whole text: one call may write less than it was given, and say why only at the next
/// one. False leaves the reason in `errno`.
bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void writePrivateFile(const fs::path& file, const std::string& text) {
  const int descriptor =
      open(file.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  // The text is brought to the disk before the rename, so that no power cut leaves an empty file
  // behind.
  const bool isWritten = descriptor >= 0 && writeAll(descriptor, text) && fsync(descriptor) == 0;
  const int error = errno;
  if (descriptor >= 0) close(descriptor);
  if (isWritten) return;
  unlink(file.c_str());
  throw std::system_error(error, std::generic_category(), file.string());
}

std::string textOf(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string textOf(const RegisteredApplication& application) {
  const auto source = static_cast<std::size_t>(application.positionSource);
  return writeJSON(Dictionary{{kApplicationID, application.applicationID},
                              {kStore, application.store.string()},
                              {kPositionSource, kPositionSourceNames.at(source)}});
}

/// The source that the fields name; `automatic` for one that is not known.
PositionSource positionSourceOf(const Dictionary& fields) {
  const auto* name = find<std::string>(fields, kPositionSource);
  const auto& names = kPositionSourceNames;
  const auto* const found = name ? std::ranges::find(names, *name) : names.end();
  if (found == names.end()) return PositionSource::automatic;
  return static_cast<PositionSource>(found - names.begin());
}

std::optional<RegisteredApplication> read(const fs::path& file) {
  const auto value = parseJSON(textOf(file));
  const auto* fields = value ? value->as<Dictionary>() : nullptr;
  const auto* applicationID = fields ? find<std::string>(*fields, kApplicationID) : nullptr;
  const auto* store = fields ? find<std::string>(*fields, kStore) : nullptr;
  std::error_code error;
  if (!applicationID || !store || !fs::is_regular_file(*store, error)) return std::nullopt;
  return RegisteredApplication{*applicationID, *store, positionSourceOf(*fields)};
}

}  // namespace

std::string RegisteredApplication::busName() const {
  // No part of such a name may begin with a digit.
  return std::string(kAgentBusName) + ".App.i" + keyOf(*this);
}

std::optional<AgentRegistry> AgentRegistry::ofUser() {
  const auto directory = defaultDataDirectory("ovinta-notify-agent");
  return directory ? std::optional(AgentRegistry(*directory / "Applications")) : std::nullopt;
}

fs::path AgentRegistry::fileOf(const RegisteredApplication& application) const {
  return directory_ / (keyOf(application) + ".json");
}

bool AgentRegistry::knows(const RegisteredApplication& application) const {
  std::error_code error;
  return fs::exists(fileOf(application), error) || error;
}

void AgentRegistry::withdraw(const RegisteredApplication& application) const {
  fs::remove(fileOf(application));
}

void AgentRegistry::note(const RegisteredApplication& application) const {
  const fs::path file = fileOf(application);
  const std::string text = textOf(application);
  if (textOf(file) == text) return;
  if (const auto error = preparePrivateDirectory(directory_)) {
    throw std::system_error(error, "Cannot make the agent's directory");
  }
  // The file is replaced as a whole or not at all, also when two processes write it at once.
  const auto draft = fs::path(file).replace_extension(std::to_string(getpid()));
  writePrivateFile(draft, text);
  fs::rename(draft, file);
}

std::vector<RegisteredApplication> AgentRegistry::applications() const {
  std::vector<RegisteredApplication> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(directory_, error)) {
    if (entry.path().extension() != ".json") continue;
    if (auto application = read(entry.path())) found.push_back(*std::move(application));
  }
  return found;
}

}  // namespace ovinta::platform::linuxos
