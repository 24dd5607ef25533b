#include "sandbox/domain/SiteSearch.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer listSites(const Call& call) {
  const Outcome outcome = call.service.state.act(
      [&](World& world, platform::Date) { return searchSites(world.sites, call.query); });
  return outcome ? objectAnswer(*outcome) : answerFor(outcome.error());
}

}  // namespace ovinta::sandbox
