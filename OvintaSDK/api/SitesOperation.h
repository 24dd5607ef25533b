#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/Pagination.h"
#include "OvintaSDK/model/wire/SiteWire.h"

namespace ovinta {

/// One page of sites.
struct SitesPage {
  SiteList sites;
  Pagination pagination;
};

/// An operation that searches for sites. Absent parameters are not sent.
class SitesOperation : public DecodingOperation<std::optional<SitesPage>> {
 protected:
  using DecodingOperation::DecodingOperation;

  std::optional<SitesPage> decode(const platform::JSONValue& answer) const final {
    auto response = wire::decode<SitesResponse>(answer, dates());
    return SitesPage{
        .sites = std::move(response.data),
        .pagination = {.currentPage = response.pages.current, .totalPages = response.pages.count}};
  }
  std::string_view decodingFailureLogLine() const final {
    return "Unexpected error Getting Sites: ";
  }
};

}  // namespace ovinta
