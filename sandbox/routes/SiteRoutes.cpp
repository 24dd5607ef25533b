#include "sandbox/domain/SiteSearch.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer listSites(const Call& call) {
  const Outcome outcome = call.service.state.act(
      [&](World& world, platform::Date) { return searchSites(world.sites, call.query); });
  if (const auto* refused = std::get_if<Refusal>(&outcome)) return answerFor(*refused);
  return objectAnswer(std::get<platform::Dictionary>(outcome));
}

}  // namespace ovinta::sandbox
