#include <algorithm>
#include <string>

#include "cli/client/ClientCommands.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/Pages.h"
#include "cli/client/PendingNotifications.h"
#include "cli/client/Records.h"
#include "cli/client/RegionOptions.h"
#include "cli/commands/Commands.h"
#include "platform/Expected.h"

namespace ovinta::cli {
namespace {

/// What both commands that arm notifications take.
struct Arming {
  NotificationInfo notification{.title = "You are near", .content = "Tell us when you are here."};
  /// Each a key, "=" and a value.
  std::vector<std::string> data;
  /// Whether to arm as on a device that may be followed: without the permission, as where location
  /// services are off, nothing is armed.
  bool simulatesLocation = false;

  NotificationInfo info() const {
    NotificationInfo info = notification;
    info.data.emplace();
    for (const std::string& entry : data) {
      const std::size_t sign = entry.find('=');
      info.data->emplace(entry.substr(0, sign), entry.substr(sign + 1));
    }
    return info;
  }
};

struct SiteArming : Arming {
  std::vector<std::int64_t> sites;
};

struct RegionArming : Arming {
  platform::CircularRegion region;
};

std::string isEntry(const std::string& text) {
  return text.find('=') == std::string::npos ? "\"" + text + "\" is no KEY=VALUE" : "";
}

void addArmingOptions(CLI::App& command, Arming& arming) {
  command.add_option("--title", arming.notification.title, "The notification's title")
      ->capture_default_str();
  command.add_option("--content", arming.notification.content, "Its text")->capture_default_str();
  command.add_option("--data", arming.data, "What it carries; may be repeated")
      ->check(isEntry)
      ->allow_extra_args(false)
      ->type_name("KEY=VALUE");
  command.add_flag("--simulate", arming.simulatesLocation,
                   "Arm as on a device with location services and the permission to use them; "
                   "`ovinta track` then fires what it drives into");
}

/// The sites of those numbers, in that order; or the first number that the service does not know.
platform::Expected<SiteList, std::int64_t> pick(const SiteList& known,
                                                const std::vector<std::int64_t>& numbers) {
  SiteList sites;
  for (const std::int64_t number : numbers) {
    const auto site = std::ranges::find(known, number, [](const SitePtr& one) { return one->id; });
    if (site == known.end()) return number;
    sites.push_back(*site);
  }
  return sites;
}

ExitCode armSites(Client& client, const SiteArming& arming) {
  std::optional<SiteList> known;
  const Outcome search = awaitPages(client, [&](const Client::Report& report) {
    Ovinta::sites().fetchAll(std::nullopt, [&known, report](const auto& sites, const auto& error) {
      known = sites;
      report(std::nullopt, error);
    });
  });
  if (!known) return client.report(search, kNoData);
  const auto picked = pick(*known, arming.sites);
  if (!picked) {
    client.output().printFailure("Unknown Site",
                                 "The service has no site " + std::to_string(picked.error()) + ".");
    return ExitCode::failure;
  }
  return client.perform(
      [&](const Client::Report& report) {
        Ovinta::notify().createForSites(*picked, arming.info(), [report](const ErrorPtr& error) {
          reportDone(report, error, "Armed for each of the sites.");
        });
      },
      kNoData);
}

ExitCode armRegion(Client& client, const RegionArming& arming) {
  return client.perform(
      [&](const Client::Report& report) {
        Ovinta::notify().createForSitesInRegion(arming.region, arming.info(),
                                                [report](const auto& sites, const ErrorPtr& error) {
                                                  report(optionalResult(sites), error);
                                                });
      },
      kNoData);
}

ExitCode clear(Client& client, const NoOptions& /*options*/) {
  return client.perform(
      [](const Client::Report& report) {
        Ovinta::notify().clear(
            [report](const ErrorPtr& error) { reportDone(report, error, "Nothing is armed."); });
      },
      kNoData);
}

ExitCode list(Client& client, const NoOptions& /*options*/) {
  client.output().print(resultOf(pendingNotifications(*platform::services().userNotifications)));
  return ExitCode::success;
}

}  // namespace

void addNotifyCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("notify", "Notifications when the customer nears a site");
  group->require_subcommand(1);
  ClientCommands commands(*group, exitCode);
  commands.add<SiteArming>(
      "arm", "Arm a notification for each of the sites, in place of all armed before",
      [](CLI::App& command, SiteArming& arming) {
        addNumber(command, "site", arming.sites, "The site's number; five at most")->required();
        addArmingOptions(command, arming);
      },
      armSites, &SiteArming::simulatesLocation);
  commands.add<RegionArming>(
      "arm-region", "The same for the first sites that the service finds in a circle",
      [](CLI::App& command, RegionArming& arming) {
        addRegionOptions(command, arming.region);
        addArmingOptions(command, arming);
      },
      armRegion, &RegionArming::simulatesLocation);
  commands.add<NoOptions>("clear", "Disarm all", addNoOptions, clear);
  commands.add<NoOptions>("list", "Show what is armed", addNoOptions, list);
}

}  // namespace ovinta::cli
