#pragma once

#include <cstdint>

namespace ovinta {

/// How often a setter has opened or closed an order, of all orders of the process: an order knows
/// no manager that it could tell. The orders of another manager thus cost a whole look, and nothing
/// else. Whoever has seen an order's new state finds the change counted. May be called from any
/// thread.
std::uint64_t opennessChanges();

}  // namespace ovinta
