#pragma once

#include <memory>
#include <vector>

#include "cli/device/Timeline.h"
#include "platform/NotificationCenter.h"

namespace ovinta::cli {

/// Gives each of the library's notifications a line, as long as it lives; but for locations, which
/// show as the requests that they cause.
class NotificationLines {
 public:
  /// `timeline` must outlive the object.
  explicit NotificationLines(Timeline& timeline);

 private:
  std::vector<std::unique_ptr<platform::NotificationObserver>> observers_;
};

}  // namespace ovinta::cli
