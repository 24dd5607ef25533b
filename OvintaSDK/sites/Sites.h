#pragma once

#include <memory>

#include "OvintaSDK/api/APIClient.h"
#include "OvintaSDK/api/SitesOperation.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/sites/SitesManager.h"

namespace ovinta {

/// What a `SitesManager` and its requests in flight share, with all that it does.
class Sites : public std::enable_shared_from_this<Sites> {
 public:
  explicit Sites(ContextPtr context) : context_(std::move(context)) {}

  std::optional<SiteList> all() const { return all_.get(); }
  void setAll(std::optional<SiteList> sites);

  void fetch(const std::optional<std::string>& query, std::int64_t page,
             SitesPageCallback callback);
  void fetchAll(const std::optional<std::string>& query, SitesCallback callback);
  /// `per` is the page size; without it the service chooses one.
  void fetch(const platform::CircularRegion& region, std::int64_t page,
             std::optional<std::int64_t> per, SitesCallback callback);

 private:
  void fetchFrom(const std::optional<std::string>& query, std::int64_t page,
                 SitesCallback callback);
  /// Asks the service for a page, with an `Operation` made from the inputs, and takes the answer
  /// in.
  template <class Operation, class... Inputs>
  void fetchPage(std::int64_t page, SitesPageCallback callback, Inputs&&... inputs);
  void adopt(const std::optional<SitesPage>& answer, std::int64_t page);

  const ContextPtr context_;
  Guarded<std::optional<SiteList>> all_;
};

}  // namespace ovinta
