#pragma once

#include <cstdint>

namespace ovinta {

/// Which page of a list an answer holds. A plain value.
struct Pagination {
  /// The page, counted from 1, and how many there are, as the service tells.
  std::int64_t currentPage = 0;
  std::int64_t totalPages = 0;

  friend bool operator==(const Pagination&, const Pagination&) = default;
};

}  // namespace ovinta
