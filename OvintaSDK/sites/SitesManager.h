#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "../../platform/Export.h"
#include "../../platform/Region.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/model/Pagination.h"
#include "OvintaSDK/model/Site.h"
#include "OvintaSDK/sites/SitesManagerError.h"

namespace ovinta {

class Library;
class Sites;

/// Receives the sites, none of them null, or the error.
using SitesCallback = std::function<void(std::optional<SiteList>, ErrorPtr)>;

/// Receives the sites, none of them null, and where their page stands, or the error.
using SitesPageCallback =
    std::function<void(std::optional<SiteList>, std::optional<Pagination>, ErrorPtr)>;

/// Looks up the pickup sites that the service knows; reached as `Ovinta::sites()`. All methods may
/// be called from any thread and return at once. A callback, which may be empty and must not throw,
/// is called at most once, with no lock held: on the callback thread of the URL session when the
/// service was asked, on a thread of the API queue when the stored base URL is no URL, inside the
/// call when the request was refused before. It is left out only where the application's own
/// `platform::URLSession` completes a success without data; that of Linux gives every complete
/// answer its data, even if empty. Errors: `SitesManagerError` of type `loadingApiUrl`; those of a
/// request (see `OvintaError`). It may be destroyed while its requests are under way: they end as
/// they would have.
class OVINTA_EXPORT SitesManager {
 public:
  /// One of the application's own, with a list of its own.
  SitesManager();
  ~SitesManager();
  SitesManager(const SitesManager&) = delete;
  SitesManager& operator=(const SitesManager&) = delete;

  /// The sites gathered so far; absent before the first. Page 1 of any search replaces them, a
  /// later page is appended to those there are, whatever it is a page of. Not kept across restarts.
  std::optional<SiteList> all() const;
  /// Replaces the list; null entries are left out.
  void setAll(std::optional<SiteList> sites);

  /// One page, counted from 1, of the sites that match the text; an absent one matches all.
  void fetch(const std::optional<std::string>& query, std::int64_t page,
             SitesPageCallback callback = {});

  /// All pages of such a search, one after another; the callback receives `all` as it then is. A
  /// page that fails ends the run with its error; `all` keeps the pages before it.
  void fetchAll(const std::optional<std::string>& query, SitesCallback callback = {});

  /// One page of the sites in the circle; of the region only centre and radius count.
  void fetch(const platform::CircularRegion& region, std::int64_t page,
             SitesCallback callback = {});
  /// The same with `per` sites to a page; without it the service chooses their number.
  void fetch(const platform::CircularRegion& region, std::int64_t page, std::int64_t per,
             SitesCallback callback = {});

 private:
  friend class Library;
  explicit SitesManager(std::shared_ptr<Sites> sites) : sites_(std::move(sites)) {}

  const std::shared_ptr<Sites> sites_;
};

}  // namespace ovinta
