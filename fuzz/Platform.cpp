#include "fuzz/Platform.h"

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/Services.h"
#include "platform/linux/Linux.h"
#include "platform/portable/LibraryBundle.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/SimulatedBundle.h"
#include "platform/simulation/SimulatedDevice.h"
#include "tests/support/ZonedDateFormatters.h"

namespace ovinta::fuzz {
namespace {

namespace linuxos = platform::linuxos;
namespace simulation = platform::simulation;
namespace portable = platform::portable;

/// A store, its own factory and context, that keeps nothing.
class Nowhere : public platform::PersistentContainer, public platform::PersistentContainerFactory {
 public:
  std::shared_ptr<platform::PersistentContainer> makeContainer(
      std::string_view, platform::ManagedObjectModel) override {
    return std::make_shared<Nowhere>();
  }
  void loadPersistentStores(
      const std::function<void(const platform::PersistentStoreDescription&,
                               std::optional<platform::StoreError>)>& completion) override {
    completion({}, std::nullopt);
  }
  std::vector<platform::PersistentStoreDescription> persistentStoreDescriptions() const override {
    return {{.location = "nowhere"}};
  }
  std::unique_ptr<platform::ManagedObjectContext> newBackgroundContext() override {
    return std::make_unique<Context>();
  }

 private:
  class Context : public platform::ManagedObjectContext {
    using Failure = std::optional<platform::StoreError>;
    Failure executeBatchDelete(const platform::FetchRequest&) override { return {}; }
    void insert(std::shared_ptr<const platform::ManagedObject>) override {}
    Failure save() override { return {}; }
    platform::Expected<std::vector<platform::ManagedObject>, platform::StoreError> fetch(
        const platform::FetchRequest&) override {
      return std::vector<platform::ManagedObject>();
    }
  };
};

class NoLog : public platform::Log {
  void write(std::string_view) override {}
};

}  // namespace

void Requests::startDataTask(platform::URLRequest request, Completion completion) {
  ++started_;
  held_->startDataTask(std::move(request), std::move(completion));
}

bool Requests::answerFirst(const std::function<simulation::Answer()>& makeAnswer) {
  if (held_->waitingCount() == 0) return false;
  const auto answer = makeAnswer();
  std::size_t i = 0;
  while (!held_->answer(i, answer)) ++i;
  return true;
}

bool Requests::answerLast(const std::function<simulation::Answer()>& makeAnswer) {
  if (held_->waitingCount() == 0) return false;
  const auto answer = makeAnswer();
  std::size_t i = started_ - 1;
  while (!held_->answer(i, answer)) --i;
  return true;
}

void Requests::startAnew() {
  held_ = std::make_shared<simulation::HoldingURLSession>();
  started_ = 0;
}

Platform::Platform() : Platform(linuxos::makeValueServices()) {}

Platform::Platform(const platform::Services& values)
    : time(platform::Date(std::chrono::seconds(1614889800))),
      queues(std::make_shared<simulation::DrivenOperationQueueFactory>()),
      location(std::make_shared<simulation::SimulatedLocation>(time.mainQueue(), values.geodesy)),
      notifications(std::make_shared<simulation::SimulatedUserNotificationCenter>(time.mainQueue(),
                                                                                  values.geodesy)) {
  platform::install(
      {.clock = time.clock(),
       .log = std::make_shared<NoLog>(),
       .mainQueue = time.mainQueue(),
       .operationQueues = queues,
       .notificationCenter = portable::makeNotificationCenter(),
       .settings = portable::makeInMemorySettingsStore(),
       .mainBundle = std::make_shared<simulation::SimulatedBundle>(),
       .libraryBundle = std::make_shared<portable::LibraryBundle>(),
       .text = values.text,
       .dateFormatters = std::make_shared<test::ZonedDateFormatters>(values.dateFormatters),
       .urls = values.urls,
       .urlSession = requests,
       .persistentContainers = std::make_shared<Nowhere>(),
       .geodesy = values.geodesy,
       .location = location,
       .userNotifications = notifications,
       .device = std::make_shared<simulation::SimulatedDevice>()});
  UserDefaultsKey::apiBase.set("https://service.test/below");
  Ovinta::configure({{"token", "app-token"}});
}

Platform& Platform::shared() {
  static auto& platform = *new Platform;
  return platform;
}

void Platform::drain(const std::function<simulation::Answer()>& makeAnswer) {
  do {
    queues->runAll();
    time.runUntilIdle();
  } while (requests->answerFirst(makeAnswer) || queues->waitingCount() > 0);
}

void Platform::reset() {
  drain([] { return simulation::Answer::failure("The end"); });
  Ovinta::stopLocationUpdates();
  Ovinta::customer().logout();
  Ovinta::orders().setAll(std::nullopt);
  Ovinta::orders().setOpen(std::nullopt);
  Ovinta::orders().setClosed(std::nullopt);
  Ovinta::orders().setLastFetch(std::nullopt);
  Ovinta::sites().setAll(std::nullopt);
  Ovinta::setPushToken(std::nullopt);
  Ovinta::notify().clear([](const auto&) {});
  UserDefaultsKey::lastKnownAuthStatus.remove();
  queues->runAll();
  time.runUntilIdle();
  // Positions, beacons and the time of the last send lose their meaning.
  time.advance(std::chrono::minutes(1));
  requests->startAnew();
}

}  // namespace ovinta::fuzz
