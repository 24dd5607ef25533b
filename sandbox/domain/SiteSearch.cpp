#include "sandbox/domain/SiteSearch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/portable/GreatCircle.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

constexpr std::int64_t kUsualPageSize = 10;
constexpr std::int64_t kLargestPageSize = 100;

Complaint checkPage(const Value& value) {
  return checkIntegerRange(value, 1, INT32_MAX, "must be an integer from 1");
}

Complaint checkPageSize(const Value& value) {
  return checkIntegerRange(value, 1, kLargestPageSize, "must be an integer from 1 to 100");
}

constexpr std::array<FieldRule, 6> kQueryRules = {{{"latitude", checkLatitude, true},
                                                   {"longitude", checkLongitude, true},
                                                   {"radius", checkMetres, true},
                                                   {"q", checkText},
                                                   {"page", checkPage},
                                                   {"per", checkPageSize}}};
constexpr std::size_t kRegionKeys = 3;

constexpr std::array<std::string_view, 3> kSearchedKeys = {"name", "full_address",
                                                           "partner_identifier"};

/// The query with its numbers read; what is no number stays a text.
Dictionary readQuery(const std::multimap<std::string, std::string>& query) {
  Dictionary read;
  for (const auto& [key, text] : query) {
    const auto number = key == "q" ? std::nullopt : parsedNumber(text);
    read.emplace(key, number ? *number : Value(text));
  }
  return read;
}

bool asksForRegion(const Dictionary& query) {
  return std::ranges::any_of(std::span(kQueryRules).first<kRegionKeys>(),
                             [&](const FieldRule& rule) { return query.contains(rule.key); });
}

double numberAt(const Dictionary& record, std::string_view key) {
  return *number(record.find(key)->second);
}

bool holds(const Dictionary& site, const std::string& lowerCaseText) {
  return std::ranges::any_of(kSearchedKeys, [&](std::string_view key) {
    const auto* text = platform::find<std::string>(site, key);
    return text && inLowerCase(*text).find(lowerCaseText) != std::string::npos;
  });
}

/// Metres from the circle's centre; absent when the site is outside or has no place.
std::optional<double> distanceInside(const Dictionary& query, const Dictionary& site) {
  const auto* latitude = platform::find<std::string>(site, "latitude");
  const auto* longitude = platform::find<std::string>(site, "longitude");
  if (!latitude || !longitude) return std::nullopt;
  const platform::Coordinate center{numberAt(query, "latitude"), numberAt(query, "longitude")};
  const platform::Coordinate place{*number(*parsedNumber(*latitude)),
                                   *number(*parsedNumber(*longitude))};
  const double distance = platform::portable::greatCircleDistance(center, place);
  return distance <= numberAt(query, "radius") ? std::optional(distance) : std::nullopt;
}

List matches(const Sites& sites, const Dictionary& query) {
  const auto* searched = platform::find<std::string>(query, "q");
  const std::string text = searched ? inLowerCase(*searched) : std::string();
  std::vector<std::pair<double, const Dictionary*>> found;
  for (const auto& [id, site] : sites) {
    const auto distance =
        asksForRegion(query) ? distanceInside(query, site) : std::optional<double>(0);
    if (distance && holds(site, text)) found.emplace_back(*distance, &site);
  }
  std::ranges::stable_sort(found, {}, [](const auto& match) { return match.first; });
  List list;
  for (const auto& match : found) list.emplace_back(listedSite(*match.second));
  return list;
}

/// The path of another page of the same search.
std::string pagePath(std::multimap<std::string, std::string> query, std::int64_t page) {
  query.erase("page");
  query.emplace("page", std::to_string(page));
  std::string path = "/m/v1/sites";
  char separator = '?';
  for (const auto& [key, value] : query) {
    path.append(1, separator).append(percentEncoded(key)).append("=").append(percentEncoded(value));
    separator = '&';
  }
  return path;
}

}  // namespace

Outcome searchSites(const Sites& sites, const std::multimap<std::string, std::string>& query) {
  const Dictionary read = readQuery(query);
  const std::span rules(kQueryRules);
  const auto asked = asksForRegion(read) ? rules : rules.subspan(kRegionKeys);
  if (auto refused = invalid(fieldErrors(read, asked))) return *std::move(refused);

  const List all = matches(sites, read);
  const auto* wantedPer = platform::find<std::int64_t>(read, "per");
  const auto* wantedPage = platform::find<std::int64_t>(read, "page");
  const std::int64_t per = wantedPer ? *wantedPer : kUsualPageSize;
  const std::int64_t page = wantedPage ? *wantedPage : 1;
  const auto total = static_cast<std::int64_t>(all.size());
  const std::int64_t count = (total + per - 1) / per;
  const std::int64_t begin = std::min(total, (page - 1) * per);
  const std::int64_t end = std::min(total, begin + per);
  Dictionary pages = {{"current", page}, {"count", count}, {"per", per}};
  if (page < count) pages.emplace("next", pagePath(query, page + 1));
  if (page > 1 && page - 1 <= count) pages.emplace("previous", pagePath(query, page - 1));
  return Dictionary{{"data", List(all.begin() + begin, all.begin() + end)}, {"pages", pages}};
}

}  // namespace ovinta::sandbox
