#include "platform/linux/device/PowerSupplies.h"

#include <fstream>
#include <string>
#include <string_view>

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// The kernel's words for the states of a battery. When batteries differ, the first of these that
/// one of them says counts. One that is held below its full charge is plugged in.
constexpr struct {
  std::string_view status;
  BatteryState state;
} kStatuses[] = {{"Charging", BatteryState::charging},
                 {"Discharging", BatteryState::unplugged},
                 {"Not charging", BatteryState::charging},
                 {"Full", BatteryState::full}};

std::string firstLine(const fs::path& file) {
  std::string line;
  std::getline(std::ifstream(file), line);
  return line;
}

bool isBatteryOfDevice(const fs::path& supply) {
  return firstLine(supply / "type") == "Battery" && firstLine(supply / "scope") != "Device" &&
         firstLine(supply / "present") != "0";
}

}  // namespace

BatteryState readPowerSupplies(const fs::path& root) {
  const auto* best = std::end(kStatuses);
  std::error_code error;
  for (fs::directory_iterator supply(root, error), end; !error && supply != end;
       supply.increment(error)) {
    if (!isBatteryOfDevice(supply->path())) continue;
    const std::string status = firstLine(supply->path() / "status");
    const auto* found = std::begin(kStatuses);
    while (found != best && found->status != status) ++found;
    best = found;
  }
  return best == std::end(kStatuses) ? BatteryState::unknown : best->state;
}

}  // namespace ovinta::platform::linuxos
