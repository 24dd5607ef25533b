#pragma once

#include <cstddef>
#include <string>

namespace ovinta::bench {

/// The text of a service answer with this many orders, some 2 kB each: all of them different, with
/// every key, the keys in an order of their own. It is the same text every time.
std::string sampleOrders(std::size_t count);

/// A copy of an answer as it arrives: with the room to be parsed in.
std::string arrived(const std::string& answer);

}  // namespace ovinta::bench
