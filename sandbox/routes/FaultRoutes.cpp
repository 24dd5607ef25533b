#include <algorithm>
#include <regex>
#include <utility>

#include "sandbox/domain/Validation.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

/// The endpoint for apps that serves requests of that method for that path; null when there is
/// none.
const Route* findEndpoint(std::string_view method, const std::string& path) {
  const auto route = std::ranges::find_if(routes(), [&](const Route& candidate) {
    return candidate.access != Access::everyone && candidate.method == method &&
           std::regex_match(path, std::regex(std::string(candidate.pattern)));
  });
  return route == routes().end() ? nullptr : &*route;
}

Answer endpointUnknown() {
  return answerFor(refusal(Refusal::Kind::unknown, "path", "Path is of no endpoint"));
}

}  // namespace

Answer listFaults(const Call& call) { return dataAnswer(call.service.faults.list()); }

Answer listFaultKinds(const Call&) {
  platform::List endpoints;
  for (const Route& route : routes()) {
    if (route.access == Access::everyone) continue;
    endpoints.emplace_back(
        platform::Dictionary{{"method", route.method}, {"path", endpointPath(route)}});
  }
  platform::Dictionary catalogue = faultCatalogue();
  catalogue.insert_or_assign("endpoints", std::move(endpoints));
  return dataAnswer(std::move(catalogue));
}

Answer setFault(const Call& call) {
  const Route* endpoint = findEndpoint(call.parameters[0], call.parameters[1]);
  if (!endpoint) return endpointUnknown();
  if (const auto refused = invalid(faultErrors(call.data))) return answerFor(*refused);
  platform::Dictionary record = call.data;
  record.insert_or_assign("method", call.parameters[0]);
  record.insert_or_assign("path", call.parameters[1]);
  call.service.faults.set(*endpoint, record);
  return dataAnswer(std::move(record));
}

Answer clearFault(const Call& call) {
  const Route* endpoint = findEndpoint(call.parameters[0], call.parameters[1]);
  if (!endpoint) return endpointUnknown();
  call.service.faults.clear(*endpoint);
  return listFaults(call);
}

Answer clearFaults(const Call& call) {
  call.service.faults.clear();
  return listFaults(call);
}

}  // namespace ovinta::sandbox
