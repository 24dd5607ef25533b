#pragma once

#include <memory>
#include <optional>

#include "platform/SettingsStore.h"
#include "platform/linux/Linux.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// The last answer of a source of positions to an application, kept in the application's settings:
/// no source tells a permission before it is followed, and the user is not to be asked for that
/// alone. May be used from any thread.
class KeptAccess {
 public:
  KeptAccess(std::shared_ptr<SettingsStore> settings, PositionSource source);

  /// The answer that is kept; absent when the source has not answered, or another one was asked
  /// since.
  std::optional<PositionAccess> load() const;

  /// Keeps the answer. What is no answer, such as that of a service that is gone, leaves none
  /// behind.
  void store(PositionAccess access) const;

 private:
  const std::shared_ptr<SettingsStore> settings_;
  const PositionSource source_;
};

}  // namespace ovinta::platform::linuxos
