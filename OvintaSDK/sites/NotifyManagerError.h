#pragma once

#include <string_view>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/Export.h"

namespace ovinta {

enum class NotifyManagerErrorType { noLocationPermission, reachedTheMaxNumberOfSites };

/// The message of errors of that type.
OVINTA_EXPORT std::string_view rawValue(NotifyManagerErrorType type);

/// The notify manager refused to arm notifications.
class OVINTA_EXPORT NotifyManagerError : public OvintaError {
 public:
  explicit NotifyManagerError(NotifyManagerErrorType type);
  ~NotifyManagerError() override;

  NotifyManagerErrorType type() const { return type_; }
  /// More words on what happened; empty when there are none.
  std::string_view detail() const;

 private:
  NotifyManagerErrorType type_;
};

}  // namespace ovinta
