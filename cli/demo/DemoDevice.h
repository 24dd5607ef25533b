#pragma once

#include <filesystem>
#include <string>

#include "cli/demo/DemoOptions.h"
#include "cli/demo/ObservedURLSession.h"
#include "cli/demo/TemporaryDirectory.h"
#include "platform/simulation/Simulation.h"

namespace ovinta::cli {

/// How long the service may keep the demonstration waiting, by the wall clock.
inline constexpr std::chrono::seconds kPatience{20};

/// The device of the demonstration: simulated time, position and battery; real HTTP, settings and
/// order store, the latter two in a directory of its own. Made, it is what the library runs on.
class DemoDevice {
 public:
  DemoDevice(const DemoOptions& options, platform::Date start,
             ObservedURLSession::Observer observer);

  platform::simulation::Simulation& simulation() { return simulation_; }
  platform::simulation::VirtualTime& time() { return simulation_.time(); }

  /// The accuracy and distance filter in force, for people; empty while positions are not asked
  /// for.
  std::string accuracyText();

  std::filesystem::path storeFile() const { return directory_.path() / "VelkModel.sqlite"; }

 private:
  TemporaryDirectory directory_;
  platform::simulation::Simulation simulation_;
};

}  // namespace ovinta::cli
