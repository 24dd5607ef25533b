#pragma once

#include <map>
#include <string>

#include "sandbox/domain/Refusal.h"
#include "sandbox/domain/Sites.h"

namespace ovinta::sandbox {

/// Searches the sites as the query asks: "q" for those that hold the text, in any case, in name,
/// address or partner's identifier; "latitude", "longitude" and "radius" in metres, all or none,
/// for those in that circle, nearest first; "page" and "per" for the page and its size. Answers
/// {"data": the sites of the page, "pages": where it stands among all}.
Outcome searchSites(const Sites& sites, const std::multimap<std::string, std::string>& query);

}  // namespace ovinta::sandbox
