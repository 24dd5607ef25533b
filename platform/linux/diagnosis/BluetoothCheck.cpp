#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/linux/dbus/BusDaemon.h"
#include "platform/linux/diagnosis/Checks.h"
#include "platform/linux/location/beacons/BlueZObjects.h"

namespace ovinta::platform::linuxos {
namespace {

using Adapters = std::map<std::string, dbus::Properties>;

/// The adapters of the device, by the last part of their paths, such as hci0.
Adapters adaptersIn(const BlueZObjects& objects) {
  Adapters adapters;
  for (const auto& [path, interfaces] : objects) {
    const auto found = interfaces.find(kBlueZAdapter);
    if (found == interfaces.end()) continue;
    adapters.emplace(path.substr(path.rfind('/') + 1), found->second);
  }
  return adapters;
}

bool isPowered(const dbus::Properties& adapter) {
  return dbus::read<bool>(adapter, "Powered").value_or(false);
}

/// The version of BlueZ, which has no property for it, but gives its adapters the identity of a
/// device of its own unless it is told another one.
std::string versionIn(const Adapters& adapters) {
  for (const auto& [name, adapter] : adapters) {
    unsigned major = 0, minor = 0;
    const auto identity = dbus::read<std::string>(adapter, "Modalias").value_or("");
    if (std::sscanf(identity.c_str(), "usb:v1D6Bp0246d%2x%2x", &major, &minor) == 2) {
      return std::to_string(major) + "." + std::to_string(minor);
    }
  }
  return "";
}

/// Whether the adapter hears low energy. Old versions of BlueZ do not tell an adapter's roles,
/// which is then believed to.
bool hearsLowEnergy(const dbus::Properties& adapter) {
  using Names = std::vector<std::string>;
  const auto roles = dbus::read<Names>(adapter, "Roles").value_or(Names{"central"});
  return std::ranges::any_of(roles, [](const auto& role) { return role == "central"; });
}

Finding findingOf(const std::string& name, const dbus::Properties& adapter, bool isAnyPowered) {
  Finding finding{.subject = "Bluetooth adapter " + name, .condition = Condition::good};
  const bool isScanning = dbus::read<bool>(adapter, "Discovering").value_or(false);
  if (!hearsLowEnergy(adapter)) {
    finding.condition = Condition::limited;
    finding.detail = "hears no low energy, which beacons take";
    finding.advice = "Use an adapter of Bluetooth 4.0 or later.";
  } else if (!isPowered(adapter)) {
    finding.condition = isAnyPowered ? Condition::limited : Condition::missing;
    finding.detail = "off";
    finding.advice = "Switch it on: bluetoothctl power on.";
  } else {
    finding.detail = isScanning ? "on, and looking for devices" : "on";
  }
  return finding;
}

class BluetoothProbe {
 public:
  BluetoothProbe(const Surroundings& around, Check& check)
      : around_(around), check_(check), daemon_(around.systemBus) {}

  void begin() {
    check_.seekService(around_.systemBus, kBlueZName,
                       absent("BlueZ is not installed", "Install the package bluez."),
                       [this](dbus::Service& bluez) { lookWhetherItRuns(bluez); });
  }

 private:
  /// Goes on if BlueZ runs. One that does not is waited for by the library, so it is not started
  /// here either.
  void lookWhetherItRuns(dbus::Service& bluez) {
    daemon_.listNames([this, &bluez](const auto& names) {
      if (names.contains(kBlueZName)) return listAdapters(bluez);
      check_.end(absent("BlueZ does not run", "Start it: systemctl start bluetooth."));
    });
  }

  void listAdapters(dbus::Service& bluez) {
    bluez.call(kBlueZRoot, kObjectManager, kGetObjects, {}, [this](const dbus::Reply& reply) {
      if (!reply.failure) return note(adaptersIn(readBlueZObjects(reply)));
      check_.end({.condition = Condition::missing,
                  .detail = "BlueZ refuses: " + reply.failure->message,
                  .advice = "Let the user use Bluetooth, e.g. by the group bluetooth."});
    });
  }

  void note(const Adapters& adapters) {
    if (adapters.empty()) {
      return check_.end(absent("no adapter", "Plug one in, or load the driver of the one inside."));
    }
    const bool isAnyPowered = std::ranges::any_of(
        adapters, [](const auto& adapter) { return isPowered(adapter.second); });
    check_.add({.condition = Condition::good, .version = versionIn(adapters), .detail = "BlueZ"});
    for (const auto& [name, adapter] : adapters) {
      check_.add(findingOf(name, adapter, isAnyPowered));
    }
    check_.end();
  }

  /// The finding that something is missing. Where the kernel has no Bluetooth, that is told
  /// instead, since nothing else would help.
  Finding absent(const char* detail, const char* advice) const {
    std::error_code error;
    const bool isInKernel = exists(around_.bluetoothClass, error);
    return {.condition = Condition::missing,
            .detail = detail + std::string(isInKernel ? "" : ", and the kernel has no Bluetooth"),
            .advice = isInKernel ? advice
                                 : std::string("Load the kernel's module bluetooth, or take a "
                                               "kernel that has it. ") +
                                       advice};
  }

  const Surroundings& around_;
  Check& check_;
  dbus::BusDaemon daemon_;
};

}  // namespace

void checkBluetooth(const Surroundings& around, Check& check) {
  check.keep(std::make_shared<BluetoothProbe>(around, check)).begin();
}

}  // namespace ovinta::platform::linuxos
