#pragma once

#include <string>

#include "OvintaSDK/OvintaSDK.h"

namespace ovinta::cli {

// What people want to know of a single record, a labelled line each; what is absent or empty is
// left out.

std::string cardText(const Order& order);
/// The customer without the token.
std::string cardText(const Customer& customer);

}  // namespace ovinta::cli
