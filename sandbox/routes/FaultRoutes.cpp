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

/// Sets the fault under the names by which the tester calls its place.
Answer setFault(const Call& call, const Route* endpoint, const std::string& method,
                const std::string& path) {
  if (const auto refused = invalid(faultErrors(call.data))) return answerFor(*refused);
  platform::Dictionary record = call.data;
  record.insert_or_assign("method", method);
  record.insert_or_assign("path", path);
  call.service.faults.set(endpoint, record);
  return dataAnswer(std::move(record));
}

}  // namespace

Answer listFaults(const Call& call) { return dataAnswer(call.service.faults.list()); }

Answer setFault(const Call& call) {
  const Route* endpoint = findEndpoint(call.parameters[0], call.parameters[1]);
  if (!endpoint) return endpointUnknown();
  return setFault(call, endpoint, call.parameters[0], call.parameters[1]);
}

Answer setFaultForAll(const Call& call) { return setFault(call, nullptr, "ANY", "ANY"); }

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
