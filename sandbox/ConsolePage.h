#pragma once

#include <string>

#include "platform/Value.h"
#include "sandbox/Sites.h"

namespace ovinta::sandbox {

/// The page for people: sites, orders with what a merchant can do to them, and where to look.
std::string consolePage(const Sites& sites, const platform::List& orders);

}  // namespace ovinta::sandbox
