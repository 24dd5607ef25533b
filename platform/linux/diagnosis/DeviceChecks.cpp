#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/dbus/BusDaemon.h"
#include "platform/linux/device/UPower.h"
#include "platform/linux/diagnosis/Checks.h"
#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteOutbox.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

void checkBus(const std::shared_ptr<dbus::Bus>& bus, const char* advice, Check& check) {
  check.keep(std::make_shared<dbus::BusDaemon>(bus))
      .reach([&check, advice](const std::optional<dbus::Failure>& failure) {
        if (!failure) return check.end({.condition = Condition::good, .detail = "reached"});
        check.end({.condition = Condition::missing, .detail = failure->message, .advice = advice});
      });
}

/// What each `BatteryState` is called for people, by its number.
constexpr std::array<const char*, 4> kBatteryTexts{"no battery that tells its state",
                                                   "running on battery", "charging", "full"};

/// Ends the check of the battery. A device without one is in order.
void endBattery(Check& check, BatteryState state, const std::string& version,
                const std::string& source) {
  check.end({.condition = Condition::good,
             .version = version,
             .detail = source + ": " + kBatteryTexts.at(static_cast<std::size_t>(state))});
}

/// The path itself or the nearest directory above it that exists.
fs::path existingPartOf(fs::path path) {
  std::error_code error;
  while (!exists(path, error) && path.has_relative_path()) path = path.parent_path();
  return path;
}

/// The first of the directory's databases that cannot be used, by name.
std::optional<Finding> unusableFileIn(const fs::path& directory) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(directory, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (entry->path().extension() == ".sqlite") files.push_back(entry->path());
  }
  std::ranges::sort(files);
  for (const fs::path& file : files) {
    if (const auto problem = problemOfSQLiteFile(file)) {
      // The app has its outbox for itself while it runs.
      if (problem->isLocked && file.filename() == kOutboxFile) continue;
      return Finding{.condition = Condition::missing,
                     .detail = file.filename().string() + ": " + problem->text,
                     .advice = problem->advice};
    }
  }
  return std::nullopt;
}

/// What waits in the directory's outbox, in words; empty for nothing. One that cannot be read is
/// fit for use all the same, and so it is the one that an app has for itself.
std::string waitingText(const fs::path& directory) {
  const fs::path file = directory / kOutboxFile;
  std::error_code error;
  if (!exists(file, error)) return "";
  const auto count = countOutbox(file);
  if (!count) return ", an app is using it and knows which order events wait";
  return *count == 0 ? "" : ", order events that wait to be sent: " + std::to_string(*count);
}

}  // namespace

void checkSystemBus(const Surroundings& around, Check& check) {
  checkBus(around.systemBus, "Install and start the system's D-Bus (package dbus).", check);
}

void checkSessionBus(const Surroundings& around, Check& check) {
  checkBus(around.sessionBus, "Log in to a session, or run the app by dbus-run-session.", check);
}

void checkBattery(const Surroundings& around, Check& check) {
  auto& upower = check.keep(std::make_shared<dbus::Service>(around.systemBus, kUPowerName));
  upower.getProperties(
      kUPowerPath, kUPowerName, [&around, &check, &upower](const dbus::Properties& daemon) {
        const auto version = dbus::read<std::string>(daemon, "DaemonVersion");
        if (!version) {
          return endBattery(check, readPowerSupplies(around.powerSupplies), "", "the kernel");
        }
        upower.getProperties(kUPowerDisplayDevice, kUPowerDevice,
                             [&check, version](const dbus::Properties& device) {
                               endBattery(check, readUPower(device), *version, "UPower");
                             });
      });
}

void checkDataDirectory(const Surroundings& around, Check& check) {
  if (!around.dataDirectory) {
    return check.end({.condition = Condition::limited,
                      .detail = "none: nothing is kept when the app ends",
                      .advice = "Set HOME or XDG_DATA_HOME, or name a directory in the options."});
  }
  const fs::path& directory = *around.dataDirectory;
  if (!directory.is_absolute()) {
    return check.end({.condition = Condition::missing,
                      .detail = directory.string() + " is below a working directory that is gone",
                      .advice = "Name an absolute directory in the options."});
  }
  const fs::path existing = existingPartOf(directory);
  std::error_code error;
  if (is_directory(existing, error) && access(existing.c_str(), W_OK | X_OK) == 0) {
    const auto unusable = unusableFileIn(directory);
    return check.end(unusable.value_or(Finding{
        .condition = Condition::good, .detail = directory.string() + waitingText(directory)}));
  }
  check.end({.condition = Condition::missing,
             .detail = directory.string() + " cannot be written to",
             .advice = "Give the app's user " + existing.string() +
                       " to write to, or name another directory in the options."});
}

}  // namespace ovinta::platform::linuxos
