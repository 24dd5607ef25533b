#include "platform/simulation/testing/AppTest.h"

#include <iostream>
#include <utility>
#include <variant>

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/time/MainQueueOperations.h"

namespace ovinta::platform::simulation {
namespace {

/// The same trip gives the same positions every time.
constexpr std::uint64_t kSeed = 1;

void writeToStandardError(const Problem& problem) {
  const auto [file, line] = problem.place;
  if (!file.empty()) std::cerr << file << ":" << line << ": ";
  std::cerr << problem.text << std::endl;
}

}  // namespace

AppTest::AppTest(AppTestOptions options)
    : onProblem_(options.onProblem ? std::move(options.onProblem) : writeToStandardError),
      log_(std::make_shared<RecordingLog>(options.values.log)),
      bundle_(std::make_shared<SimulatedBundle>(
          SimulatedBundle::Texts{{"CFBundleShortVersionString", "1.0"}})),
      service_(
          std::make_shared<ScriptedService>([this](const Problem& problem) { report(problem); })),
      kept_(std::move(options.values)) {
  kept_.log = log_;
  kept_.settings = portable::makeInMemorySettingsStore();
  kept_.persistentContainers = portable::makeInMemoryPersistentContainerFactory();
  kept_.mainBundle = bundle_;
  kept_.libraryBundle = portable::makeLibraryBundle();
  kept_.urlSession = service_;
  launch(options.start);
}

AppTest::~AppTest() { finish(); }

void AppTest::launch(Date now) {
  simulation_ = std::make_unique<Simulation>(kept_, now);
  posted_ = std::make_shared<RecordingNotificationCenter>(portable::makeNotificationCenter());
  Services services = simulation_->services();
  services.notificationCenter = posted_;
  services.operationQueues = makeMainQueueOperations(services.mainQueue);
  service_->answerThrough(services.mainQueue);
  install(std::move(services));
  Ovinta::startAfresh();
}

void AppTest::relaunch() {
  player_.reset();
  const auto permission = location().authorizationStatus();
  const bool isLocationEnabled = location().locationServicesEnabled();
  device().setBatteryMonitoringEnabled(true);
  const auto battery = device().batteryState();
  const auto pending = notifications().pending();
  launch(time().now());
  location().setAuthorizationStatus(permission);
  location().setLocationServicesEnabled(isLocationEnabled);
  device().setBatteryState(battery);
  for (const auto& request : pending) notifications().add(request, {});
}

void AppTest::signIn(const Dictionary& customer) {
  const std::pair<UserDefaultsKey, std::string_view> fields[] = {
      {UserDefaultsKey::customerToken, "api_token"},
      {UserDefaultsKey::customerName, "name"},
      {UserDefaultsKey::customerEmail, "email"},
      {UserDefaultsKey::customerVehicleType, "car_type"},
      {UserDefaultsKey::customerVehicleColor, "car_color"},
      {UserDefaultsKey::customerLicensePlate, "license_plate"},
      {UserDefaultsKey::customerPhone, "phone"}};
  for (const auto& [key, field] : fields) {
    if (const auto* text = find<std::string>(customer, field)) key.set(*text);
  }
  // A manager of one's own begins with what the settings hold.
  Ovinta::customer().setCurrent(CustomerManager().current());
}

TripPlayer& AppTest::setOff(Trip trip) {
  player_ = std::make_unique<TripPlayer>(*simulation_, std::move(trip), kSeed);
  player_->start();
  return *player_;
}

void AppTest::travel(Trip trip) { advance(setOff(std::move(trip)).duration()); }

void AppTest::travel(const std::filesystem::path& gpxFile) {
  auto trip = Trip::fromGPX(gpxFile);
  if (auto* const problem = std::get_if<std::string>(&trip)) {
    report({.text = std::move(*problem)});
  } else {
    travel(std::get<Trip>(std::move(trip)));
  }
}

bool AppTest::finish() {
  service_->close();
  return !hasProblem_;
}

void AppTest::report(const Problem& problem) {
  hasProblem_ = true;
  onProblem_(problem);
}

}  // namespace ovinta::platform::simulation
