#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Linux.h"

namespace ovinta::platform::linuxos {

/// How a part of the device stands, the best case first. Has a `name`.
enum class Condition {
  /// Works.
  good,
  /// Works in part.
  limited,
  /// Absent, refused or switched off: what needs it does not work.
  missing,
  /// Did not answer in time.
  unknown
};

/// What each condition is called, in the order of their values.
inline constexpr std::array<std::string_view, 4> kConditionNames{"good", "limited", "missing",
                                                                 "unknown"};

/// What was found of one part of the device, in English. A plain value.
struct Finding {
  /// The part, e.g. "position" or "Bluetooth adapter hci0".
  std::string subject = {};
  /// How it stands.
  Condition condition = Condition::unknown;
  /// The version of the service that was looked at; empty when the service does not tell it.
  std::string version = {};
  /// How it stands, in a few words.
  std::string detail = {};
  /// What to do about it, in a sentence; empty when there is nothing to do.
  std::string advice = {};
};

/// Looks at everything of this device that `makeServices` with the same options would use: the
/// buses, position and the permission to follow it, Bluetooth, notifications, battery, data
/// directory. Independent of `makeServices`, and nothing of it stays: the position is followed just
/// until it shows who may. Where the location portal is the source, that may ask the user. Findings
/// carry no position and no name of a person or of a device.
///
/// May be called from any thread; returns at once. `completion` is called once on the main thread,
/// with all findings in a fixed order, at the latest after some four seconds: whatever has not
/// answered by then is a finding too. `mainQueue`: that of the installed services if it is one of
/// the application's own. Without it the queue of `makeServices` serves, which takes a main loop.
OVINTA_EXPORT void diagnose(const Options& options,
                            std::function<void(const std::vector<Finding>&)> completion,
                            std::shared_ptr<MainQueue> mainQueue = nullptr);

}  // namespace ovinta::platform::linuxos

template <>
struct ovinta::platform::EnumNames<ovinta::platform::linuxos::Condition>
    : NamesInOrder<ovinta::platform::linuxos::kConditionNames> {};
