#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OvintaSDK/model/Site.h"

namespace ovinta {

/// The paging block of a list answer.
struct Pages {
  /// The links to the pages after and before this one, as received.
  std::optional<std::string> next;
  std::optional<std::string> previous;
  std::int64_t current = 0;
  /// How many pages there are; `current` is counted from 1.
  std::int64_t count = 0;
  /// How many items a page has.
  std::int64_t per = 0;
};

/// One page of a list of sites.
struct SitesResponse {
  SiteList data;
  Pages pages;
};

}  // namespace ovinta
