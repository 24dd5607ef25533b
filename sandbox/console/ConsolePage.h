#pragma once

#include <string>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// What the page shows: lists of records, each as the service lists them for testers.
struct ConsoleView {
  platform::List orders;
  platform::List customers;
  platform::List requests;
  platform::List sites;
};

/// The page for people: orders with what a merchant can do to them, a form for an order to claim,
/// accounts, the last requests and the sites.
std::string consolePage(const ConsoleView& view);

}  // namespace ovinta::sandbox
