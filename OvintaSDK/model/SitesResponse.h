#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OvintaSDK/model/Site.h"

namespace ovinta {

/// The paging block of a list answer.
struct Pages {
  /// As received.
  std::optional<std::string> next;
  std::optional<std::string> previous;
  std::int64_t current = 0;
  /// The number of pages.
  std::int64_t count = 0;
  /// Items per page.
  std::int64_t per = 0;
};

/// One page of a list of sites.
struct SitesResponse {
  SiteList data;
  Pages pages;
};

}  // namespace ovinta
