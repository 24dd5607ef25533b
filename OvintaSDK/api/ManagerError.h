#pragma once

#include <string>
#include <string_view>

#include "../../platform/Export.h"
#include "../../platform/FatalError.h"
#include "OvintaSDK/api/OvintaError.h"

namespace ovinta {

/// One reason for which a manager refuses a request.
template <class Type>
struct ManagerErrorRow {
  Type type;
  std::string_view message;
  /// More words on what happened; empty when there are none.
  std::string_view detail = {};
};

/// What a manager refuses: the reasons as `kRows`, and as `kContext` the manager's type, which the
/// titles of its errors name.
template <class Type>
struct ManagerErrorTable;

/// The row of the type. A value that is none of the enumeration's cases ends the process.
template <class Type>
const ManagerErrorRow<Type>& managerErrorRow(Type type) {
  for (const ManagerErrorRow<Type>& row : ManagerErrorTable<Type>::kRows) {
    if (row.type == type) return row;
  }
  platform::fatalError("unexpected enumeration case");
}

/// The message of errors of that type.
template <class Type>
requires requires { ManagerErrorTable<Type>::kRows; }
std::string_view rawValue(Type type) { return managerErrorRow(type).message; }

/// A manager refused a request before sending it, for the reason that `type` tells.
template <class Type>
class OVINTA_EXPORT ManagerError : public OvintaError {
 public:
  explicit ManagerError(Type type)
      : OvintaError(std::string(rawValue(type)),
                    ErrorSubject::ofType(ManagerErrorTable<Type>::kContext)),
        type_(type) {}

  Type type() const { return type_; }
  /// More words on what happened; empty when there are none.
  std::string_view detail() const { return managerErrorRow(type_).detail; }

 private:
  Type type_;
};

}  // namespace ovinta
