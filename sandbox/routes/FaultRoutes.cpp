#include <algorithm>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <utility>

#include "sandbox/domain/Validation.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

/// What stands for all endpoints, as method and, after a slash, as path.
constexpr std::string_view kAny = "ANY";

/// The endpoint for apps that serves requests of that method for that path, null for all of them;
/// absent when there is none.
std::optional<const Route*> findPlace(std::string_view method, const std::string& path) {
  if (method == kAny && path.substr(1) == kAny) return nullptr;
  const auto route = std::ranges::find_if(routes(), [&](const Route& candidate) {
    return candidate.access != Access::everyone && candidate.method == method &&
           std::regex_match(path, std::regex(std::string(candidate.pattern)));
  });
  if (route == routes().end()) return std::nullopt;
  return &*route;
}

Answer endpointUnknown() {
  return answerFor(refusal(Refusal::Kind::unknown, "path", "Path is of no endpoint"));
}

}  // namespace

Answer listFaults(const Call& call) { return dataAnswer(call.service.faults.list()); }

Answer listFaultKinds(const Call&) {
  platform::List endpoints = {
      platform::Dictionary{{"method", kAny}, {"path", "/" + std::string(kAny)}}};
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
  const auto endpoint = findPlace(call.parameters[0], call.parameters[1]);
  if (!endpoint) return endpointUnknown();
  if (const auto refused = invalid(faultErrors(call.data))) return answerFor(*refused);
  platform::Dictionary record = call.data;
  record.insert_or_assign("method", call.parameters[0]);
  record.insert_or_assign("path", call.parameters[1]);
  call.service.faults.set(*endpoint, record);
  return dataAnswer(std::move(record));
}

Answer clearFault(const Call& call) {
  const auto endpoint = findPlace(call.parameters[0], call.parameters[1]);
  if (!endpoint) return endpointUnknown();
  call.service.faults.clear(*endpoint);
  return listFaults(call);
}

Answer clearFaults(const Call& call) {
  call.service.faults.clear();
  return listFaults(call);
}

}  // namespace ovinta::sandbox
