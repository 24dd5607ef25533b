#pragma once

#include <string>
#include <string_view>

#include "../../platform/EnumNames.h"
#include "../../platform/Export.h"
#include "../../platform/FatalError.h"
#include "OvintaSDK/api/OvintaError.h"

namespace ovinta {

/// One reason for which a manager refuses a request. A constant; may be read from any thread.
template <class Type>
struct ManagerErrorRow {
  /// The reason, a case of the manager's enumeration.
  Type type;
  /// The description of the error, in English; also the `name` of the reason.
  std::string_view message;
  /// More words on what happened, in English; empty when there are none.
  std::string_view detail = {};
};

/// What a manager refuses, one row for each case of its enumeration `Type`: the reasons as `kRows`,
/// and as `kContext` the name of the manager's type, which the titles of its errors spell out.
template <class Type>
struct ManagerErrorTable;

/// The row of the type; valid for ever. A value that is none of the enumeration's cases ends the
/// process. May be called from any thread, as `rawValue`.
template <class Type>
const ManagerErrorRow<Type>& managerErrorRow(Type type) {
  for (const ManagerErrorRow<Type>& row : ManagerErrorTable<Type>::kRows) {
    if (row.type == type) return row;
  }
  platform::fatalError("unexpected enumeration case");
}

/// The message of errors of that type. A value that is none of the enumeration's cases ends the
/// process.
template <class Type>
requires requires { ManagerErrorTable<Type>::kRows; }
std::string_view rawValue(Type type) { return managerErrorRow(type).message; }

/// A manager refused a request before sending it, for the reason that `type` tells. The title names
/// the manager, e.g. "Error with Orders Manager". Immutable; may be used from any thread.
template <class Type>
class OVINTA_EXPORT ManagerError : public OvintaError {
 public:
  /// A value that is none of the enumeration's cases ends the process.
  explicit ManagerError(Type type)
      : OvintaError(std::string(rawValue(type)),
                    ErrorSubject::ofType(ManagerErrorTable<Type>::kContext)),
        type_(type) {}

  /// Always a case of the enumeration.
  Type type() const { return type_; }
  /// More words on what happened; empty when there are none.
  std::string_view detail() const { return managerErrorRow(type_).detail; }

 private:
  Type type_;
};

/// A reason for a refusal is named by its message.
template <class Type>
requires requires { ManagerErrorTable<Type>::kRows; }
struct platform::EnumNames<Type> {
  /// The message of errors of that type; empty for a value that is none of the cases.
  static constexpr std::string_view of(Type type) {
    for (const auto& row : ManagerErrorTable<Type>::kRows) {
      if (row.type == type) return row.message;
    }
    return {};
  }
};

}  // namespace ovinta
