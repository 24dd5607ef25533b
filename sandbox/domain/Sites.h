#pragma once

#include <cstdint>
#include <map>
#include <span>

#include "platform/Value.h"
#include "sandbox/domain/Validation.h"

namespace ovinta::sandbox {

/// The places where orders are picked up, by their identifiers. Each is kept as apps get to see it,
/// with "beacon_regions" besides.
using Sites = std::map<std::int64_t, platform::Dictionary>;

/// The sites that the service has unless it is told of others: in New York, Boston and Chicago.
Sites builtInSites();

/// What a site's record must and may hold.
std::span<const FieldRule> siteRules();

/// What a search tells of the site.
platform::Dictionary listedSite(platform::Dictionary site);

/// All sites, by rising identifier.
platform::List allSites(const Sites& sites);

/// What an order tells of its site and of the project that the site belongs to.
platform::Dictionary orderFields(const platform::Dictionary& site);

}  // namespace ovinta::sandbox
