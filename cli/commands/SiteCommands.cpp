#include "cli/client/ClientCommands.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/Pages.h"
#include "cli/client/Records.h"
#include "cli/client/RegionOptions.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {
namespace {

struct Search {
  std::optional<std::string> query;
  std::int64_t page = 1;
};

struct RegionSearch {
  platform::CircularRegion region;
  std::int64_t page = 1;
  std::optional<std::int64_t> per;
};

void addQuery(CLI::App& command, Search& search) {
  command.add_option("query", search.query, "A text that the sites match; all when left out");
}

/// A callback that reports the sites.
SitesCallback reporting(const Client::Report& report) {
  return [report](const std::optional<SiteList>& sites, const ErrorPtr& error) {
    report(optionalResult(sites), error);
  };
}

ExitCode searchPage(Client& client, const Search& search) {
  return client.perform(
      [&](const Client::Report& report) {
        Ovinta::sites().fetch(
            search.query, search.page,
            [report](const auto& sites, const auto& pagination, const ErrorPtr& error) {
              if (!sites || !pagination) return report(std::nullopt, error);
              report(resultOf(*sites, *pagination), nullptr);
            });
      },
      kNoData);
}

ExitCode searchAll(Client& client, const Search& search) {
  const Outcome outcome = awaitPages(client, [&](const Client::Report& report) {
    Ovinta::sites().fetchAll(search.query, reporting(report));
  });
  return client.report(outcome, kNoData);
}

ExitCode searchRegion(Client& client, const RegionSearch& search) {
  return client.perform(
      [&](const Client::Report& report) {
        if (search.per) {
          Ovinta::sites().fetch(search.region, search.page, *search.per, reporting(report));
        } else {
          Ovinta::sites().fetch(search.region, search.page, reporting(report));
        }
      },
      kNoData);
}

}  // namespace

void addSiteCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("sites", "The pickup sites that the service knows");
  group->require_subcommand(1);
  ClientCommands commands(*group, exitCode);
  commands.add<Search>(
      "search", "One page of a text search",
      [](CLI::App& command, Search& search) {
        addQuery(command, search);
        addNumber(command, "--page", search.page, "Counted from 1")->capture_default_str();
      },
      searchPage);
  commands.add<Search>("all", "All pages of a text search", addQuery, searchAll);
  commands.add<RegionSearch>(
      "region", "One page of the sites in a circle",
      [](CLI::App& command, RegionSearch& search) {
        addRegionOptions(command, search.region);
        addNumber(command, "--page", search.page, "Counted from 1")->capture_default_str();
        addNumber(command, "--per", search.per, "Sites to a page");
      },
      searchRegion);
}

}  // namespace ovinta::cli
