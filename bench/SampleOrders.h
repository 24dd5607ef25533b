#pragma once

#include <cstddef>
#include <string>

namespace ovinta::bench {

/// The text of a service answer with this many orders, some 2 kB each.
std::string sampleOrders(std::size_t count);

}  // namespace ovinta::bench
