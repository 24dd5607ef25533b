#pragma once

#include <cstdint>

namespace ovinta {

/// Which page of a list an answer holds.
struct Pagination {
  /// Counted from 1.
  std::int64_t currentPage = 0;
  std::int64_t totalPages = 0;

  friend bool operator==(const Pagination&, const Pagination&) = default;
};

}  // namespace ovinta
