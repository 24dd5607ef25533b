#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/diagnosis/Checks.h"
#include "platform/linux/location/geoclue/GeoClueProvider.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "platform/linux/location/portal/PortalProvider.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr const char* kPermission = "position permission";

/// What a diagnosis says of a source of positions.
struct SourceTexts {
  const char* name;
  /// What to do when the source is not there.
  const char* install;
  /// What to do when the source is there but of no use.
  const char* mend;
  /// What is said when the source does not say whether the application may follow the position, and
  /// what to do then.
  const char* silence;
  const char* wake;
  /// The place where the user, or whoever sets the device up, lets applications have the position.
  std::string permissions;
};

SourceTexts textsOf(PositionSource source) {
  switch (source) {
    case PositionSource::gpsd:
      return {"gpsd",
              "Install and start gpsd, with a receiver (package gpsd).",
              "Start gpsd, with a receiver: systemctl start gpsd.",
              "gpsd does not greet who connects",
              "Start gpsd anew: systemctl restart gpsd.",
              ""};
    case PositionSource::portal:
      return {"the location portal",
              "Install xdg-desktop-portal, the desktop's part of it, and GeoClue.",
              "Install the desktop's part of the portal, such as xdg-desktop-portal-gtk.",
              "the user has not answered the portal's question",
              "Answer the portal's question.",
              "the desktop's settings"};
    case PositionSource::automatic:
    case PositionSource::geoclue:
      break;
  }
  return {"GeoClue",
          "Install GeoClue (package geoclue-2.0).",
          "See why GeoClue does not start: journalctl -u geoclue.",
          "not determined: GeoClue does not answer, as when nobody is there to ask the user",
          "Start an agent for GeoClue in the user's session, as desktops do.",
          GeoClueProvider::Options().configuration};
}

/// Follows the position until the source has said who may.
class PositionProbe {
 public:
  PositionProbe(const Surroundings& around, Check& check)
      : around_(around), check_(check), texts_(textsOf(around.positionSource)) {}

  void begin() {
    switch (around_.positionSource) {
      case PositionSource::gpsd:
        return look();
      case PositionSource::portal:
        return check_.seekBus(around_.sessionBus, [this] { look(); });
      default:
        return check_.seekBus(around_.systemBus, [this] { look(); });
    }
  }

 private:
  void look() {
    around_.positionProvider->findService(lifetime_.guard([this](bool isThere) {
      if (!isThere) return endAbsent("is not there", texts_.install);
      ask();
    }));
  }

  void ask() {
    // Nobody looks at the positions, so the filter keeps them few.
    constexpr double kFilterMetres = 500;
    check_.expect(
        {source(), {.subject = kPermission, .detail = texts_.silence, .advice = texts_.wake}});
    stream_ = around_.positionProvider->open(
        kFilterMetres, {.onLocation = [](const Location&) {},
                        .onAccess = [this](PositionAccess access) { note(access); },
                        .onVersion = [this](const std::string& version) { end(version); }});
  }

  void note(PositionAccess access);
  void askDetails();
  void noteAccuracy(const dbus::Properties& manager);

  Finding source(Condition condition = Condition::good) const {
    return {.condition = condition, .detail = texts_.name};
  }
  void endAbsent(const char* how, const char* advice) {
    check_.end({.condition = Condition::missing,
                .detail = std::string(texts_.name) + " " + how,
                .advice = advice});
  }
  void endRefused(const char* how, std::string advice) {
    check_.add(source());
    check_.end({.subject = kPermission,
                .condition = Condition::missing,
                .detail = how,
                .advice = std::move(advice)});
  }
  void end(Finding found) {
    stream_ = nullptr;
    check_.add(std::move(found));
    check_.end({.subject = kPermission, .condition = Condition::good, .detail = granted_});
  }
  void end(const std::string& version) {
    Finding found = source();
    found.version = version;
    end(std::move(found));
  }

  const Surroundings& around_;
  Check& check_;
  const SourceTexts texts_;
  const char* granted_ = "granted";
  std::unique_ptr<PositionStream> stream_;
  /// The source's service, which is asked for what it tells of itself.
  std::optional<dbus::Service> service_;
  const portable::Lifetime lifetime_;
};

void PositionProbe::note(PositionAccess access) {
  if (access == PositionAccess::grantedAlways) granted_ = "granted, always";
  const bool isGranted =
      access == PositionAccess::granted || access == PositionAccess::grantedAlways;
  // gpsd lets everybody in at once, and tells its version next, which is waited for.
  if (isGranted && around_.positionSource == PositionSource::gpsd) return;
  stream_ = nullptr;
  if (isGranted) return askDetails();
  switch (access) {
    case PositionAccess::off:
      return endRefused("location is switched off for this user",
                        "Switch location on in the desktop's settings.");
    case PositionAccess::denied:
      return endRefused("refused",
                        "Allow " + around_.applicationID + " in " + texts_.permissions + ".");
    case PositionAccess::undecided:
      check_.add(source());
      return check_.end({.subject = kPermission, .detail = texts_.silence, .advice = texts_.wake});
    default:
      return endAbsent("cannot be used", texts_.mend);
  }
}

void PositionProbe::askDetails() {
  check_.expect(
      {source(), {.subject = kPermission, .condition = Condition::good, .detail = granted_}});
  if (around_.positionSource == PositionSource::portal) {
    service_.emplace(around_.sessionBus, kPortalName);
    service_->getProperties(kPortalPath, kPortalLocation, [this](const dbus::Properties& portal) {
      const auto version = dbus::read<std::uint32_t>(portal, "version");
      end(version ? std::to_string(*version) : "");
    });
  } else {
    service_.emplace(around_.systemBus, kGeoClueName);
    service_->getProperties(kGeoClueManagerPath, kGeoClueManager,
                            [this](const dbus::Properties& manager) { noteAccuracy(manager); });
  }
}

void PositionProbe::noteAccuracy(const dbus::Properties& manager) {
  const auto level = dbus::read<std::uint32_t>(manager, "AvailableAccuracyLevel");
  if (level.value_or(kGeoClueExact) >= kGeoClueExact) return end(source());
  Finding found = source(Condition::limited);
  found.detail += ", without a source of exact positions";
  found.advice = "Connect a receiver of satellites that GeoClue knows, such as a modem's.";
  end(std::move(found));
}

}  // namespace

void checkPosition(const Surroundings& around, Check& check) {
  check.keep(std::make_shared<PositionProbe>(around, check)).begin();
}

}  // namespace ovinta::platform::linuxos
