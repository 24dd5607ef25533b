#include "tests/support/SDKFixture.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/linux/Linux.h"
#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "platform/portable/LibraryBundle.h"
#include "platform/portable/Portable.h"

namespace ovinta::test {

namespace linuxos = platform::linuxos;
namespace simulation = platform::simulation;
namespace portable = platform::portable;

namespace {

const char* const kVersionKey = "CFBundleShortVersionString";

Item itemIn(const platform::Notification& notification) {
  if (const auto* orders = notification.objectAs<OrderList>()) return itemOf(*orders);
  if (const auto* order = notification.objectAs<OrderPtr>()) return itemOf(*order);
  if (const auto* at = notification.objectAs<platform::Location>()) {
    return thePosition(at->coordinate.latitude, at->coordinate.longitude);
  }
  if (const auto* error = notification.objectAs<ErrorPtr>()) return itemOf(*error);
  return notification.object.has_value() ? Item{"another object"} : Item{};
}

/// Below the base URL.
std::string pathOf(const platform::URLRequest& request) {
  const std::string prefix = std::string(kBaseURL) + "/";
  const std::string& text = request.url.text;
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

Step stepOf(const platform::URLRequest& request) {
  std::string token;
  for (const auto& [name, value] : request.headers) {
    // Token token="..."
    if (name == "Authorization") token = value.substr(13, value.size() - 14);
  }
  // {"data":...}
  const auto& body = request.body;
  return requested(request.method, pathOf(request), token,
                   body ? body->substr(8, body->size() - 9) : "");
}

}  // namespace

SDKFixture::SDKFixture()
    : http(std::make_shared<simulation::AnsweringURLSession>(
          [this](const platform::URLRequest& request) { return answerTo(request); })),
      queues(std::make_shared<simulation::DrivenOperationQueueFactory>()),
      log(std::make_shared<simulation::RecordingLog>(journal_)),
      mainBundle(std::make_shared<simulation::SimulatedBundle>(
          simulation::SimulatedBundle::Texts{{kVersionKey, "1.2.3"}})),
      libraryBundle(std::make_shared<simulation::SimulatedBundle>(
          simulation::SimulatedBundle::Texts{{kVersionKey, "9.4.8"}})) {
  services = makeServices();
  platform::install(services);
  Library::replaceProcess();
  UserDefaultsKey::apiBase.set(std::string(kBaseURL));
  observeNotifications();
}

platform::Services SDKFixture::makeServices() {
  const auto values = linuxos::makeValueServices();
  location = std::make_shared<simulation::SimulatedLocation>(time.mainQueue(), values.geodesy);
  dateFormatters = std::make_shared<ZonedDateFormatters>(values.dateFormatters);
  device = std::make_shared<simulation::SimulatedDevice>();
  userNotifications = std::make_shared<simulation::SimulatedUserNotificationCenter>(
      time.mainQueue(), values.geodesy);
  if (const auto model = portable::LibraryBundle().resource("VelkModel", "momd")) {
    libraryBundle->setResource("VelkModel", "momd", *model);
  }
  return {
      .clock = time.clock(),
      .log = log,
      .mainQueue = time.mainQueue(),
      .operationQueues = queues,
      .notificationCenter = portable::makeNotificationCenter(),
      .settings = portable::makeInMemorySettingsStore(),
      .mainBundle = mainBundle,
      .libraryBundle = libraryBundle,
      .text = values.text,
      .dateFormatters = dateFormatters,
      .urls = values.urls,
      .urlSession = http,
      .persistentContainers =
          std::make_shared<linuxos::SQLitePersistentContainerFactory>(directory.path() / "data"),
      .geodesy = values.geodesy,
      .location = location,
      .userNotifications = userNotifications,
      .device = device,
  };
}

// The library keeps its services; they must not reach back into a test that is over.
SDKFixture::~SDKFixture() {
  http->setService([](const auto&) { return Answer::failure("the test is over"); });
}

void SDKFixture::restartWith(const std::function<void(platform::Services&)>& change) {
  change(services);
  platform::install(services);
  Library::replaceProcess();
  observeNotifications();
}

void SDKFixture::answer(std::string_view method, std::string_view path, Answer answer) {
  answers_.insert_or_assign(std::string(method) + " " + std::string(path), std::move(answer));
}

void SDKFixture::answerAll(Answer answer) {
  answers_.clear();
  this->answer("", "", std::move(answer));
}

SDKFixture::Answer SDKFixture::dataAnswer(platform::Value record) {
  return Answer::json(200, dataText(std::move(record)));
}

SDKFixture::Answer SDKFixture::ordersAnswer(const std::vector<platform::Dictionary>& records) {
  return dataAnswer(platform::List(records.begin(), records.end()));
}

SDKFixture::Answer SDKFixture::answerTo(const platform::URLRequest& request) {
  const std::string line = request.method + " " + pathOf(request);
  journal_->note(stepOf(request));
  const auto exact = answers_.find(line);
  const auto entry = exact == answers_.end() ? answers_.find(" ") : exact;
  if (entry == answers_.end()) return Answer::failure("No answer was given for " + line);
  return entry->second;
}

Steps SDKFixture::happened(std::initializer_list<Step::Kind> kinds) {
  Steps steps = journal_->take();
  std::erase_if(steps, [kinds](const Step& step) {
    return !std::empty(kinds) && !std::ranges::count(kinds, step.kind);
  });
  return steps;
}

std::vector<std::string> SDKFixture::bodies(std::string_view method, std::string_view path) const {
  std::vector<std::string> bodies;
  for (const auto& request : requests()) {
    if (request.method == method && pathOf(request) == path)
      bodies.push_back(request.body.value_or("(none)"));
  }
  return bodies;
}

void SDKFixture::drain() {
  constexpr int kMostRounds = 10'000;
  for (int round = 0; round < kMostRounds; ++round) {
    std::size_t done = queues->runAll();
    time.runUntilIdle();
    done += http->deliverAll();
    if (done == 0 && queues->waitingCount() == 0) return;
  }
  FAIL() << "the library never comes to rest";
}

void SDKFixture::advance(std::chrono::seconds interval) {
  drain();
  for (; interval > interval.zero(); --interval) {
    time.advance(std::chrono::seconds(1));
    drain();
  }
}

CustomerPtr SDKFixture::signIn() {
  auto current = std::make_shared<const Customer>(customer());
  Ovinta::customer().setCurrent(current);
  return current;
}

void SDKFixture::fetchOrders(const std::vector<platform::Dictionary>& records) {
  answer("GET", "m/v1/orders", ordersAnswer(records));
  Ovinta::orders().fetch();
  drain();
}

Step SDKFixture::reportedPermission(std::int64_t order, const std::string& permission,
                                    const std::string& token) {
  return requested("POST", "m/v1/events", token,
                   R"({"order_id":)" + std::to_string(order) +
                       R"(,"event_type":"permission_update","location_permission":")" + permission +
                       "\"}");
}

void SDKFixture::observeNotifications() {
  constexpr std::array kNames{
      SDKNotification::ordersUpdated,         SDKNotification::ordersError,
      SDKNotification::orderUpdated,          SDKNotification::orderEventError,
      SDKNotification::locationUpdate,        SDKNotification::locationAuthorizationNotDetermined,
      SDKNotification::locationNotAuthorized, SDKNotification::locationAuthorizationChanged};
  observers_.clear();
  for (const platform::NotificationName name : kNames) {
    observers_.push_back(
        services.notificationCenter->addObserver(name, [this](const auto& notification) {
          journal_->note(posted(notification.name, itemIn(notification)));
        }));
  }
}

}  // namespace ovinta::test
