#pragma once

#include <optional>
#include <string>

#include "platform/Export.h"

namespace ovinta {

class Order;
struct Site;

// The JSON text of a record, in the form in which the service sends it; absent when a field cannot
// be written, such as text that is not UTF-8. May be called from any thread.

OVINTA_EXPORT std::optional<std::string> jsonText(const Order& order);
OVINTA_EXPORT std::optional<std::string> jsonText(const Site& site);

}  // namespace ovinta
