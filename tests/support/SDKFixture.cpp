#include "tests/support/SDKFixture.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/JSON.h"
#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "platform/linux/text/TextServices.h"
#include "platform/portable/LibraryBundle.h"
#include "platform/portable/Portable.h"

namespace ovinta::test {

namespace linuxos = platform::linuxos;
namespace simulation = platform::simulation;
namespace portable = platform::portable;

namespace {

const char* const kVersionKey = "CFBundleShortVersionString";

template <class List>
std::string numbersOf(std::string text, const List& list) {
  for (const auto& entry : list) text += " " + std::to_string(entry->id);
  return text;
}

std::string objectText(const std::any& object) {
  if (const auto* orders = std::any_cast<OrderList>(&object))
    return test::textOf(std::optional(*orders));
  if (const auto* order = std::any_cast<OrderPtr>(&object)) return test::textOf(*order);
  if (const auto* at = std::any_cast<platform::Location>(&object)) {
    return numberText(at->coordinate.latitude) + ", " + numberText(at->coordinate.longitude);
  }
  const auto* error = std::any_cast<ErrorPtr>(&object);
  return error ? test::textOf(*error) : "";
}

}  // namespace

std::string textOf(const OrderPtr& order) {
  return order ? "order " + std::to_string(order->id) : "";
}

std::string textOf(const std::optional<OrderList>& orders) {
  return orders ? numbersOf("orders", *orders) : "";
}

std::string textOf(const CustomerPtr& customer) {
  return customer ? "customer " + customer->token : "";
}

std::string textOf(const std::optional<SiteList>& sites) {
  return sites ? numbersOf("sites", *sites) : "";
}

std::string textOf(const std::optional<Pagination>& pagination) {
  return pagination ? "page " + std::to_string(pagination->currentPage) + " of " +
                          std::to_string(pagination->totalPages)
                    : "";
}

std::string textOf(const std::optional<platform::Dictionary>& configuration) {
  return configuration ? "configuration " + platform::writeJSON(*configuration) : "";
}

std::string textOf(const ErrorPtr& error) {
  return error ? error->title() + ": " + error->localizedDescription() : "";
}

std::vector<std::string> Journal::take() {
  auto lines = lines_.lines();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(taken_));
  taken_ += lines.size();
  return lines;
}

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
  const auto geodesy = linuxos::makeGeodesy();
  location = std::make_shared<simulation::SimulatedLocation>(time.mainQueue(), geodesy);
  dateFormatters = std::make_shared<ZonedDateFormatters>(linuxos::makeDateFormatterFactory());
  device = std::make_shared<simulation::SimulatedDevice>();
  userNotifications =
      std::make_shared<simulation::SimulatedUserNotificationCenter>(time.mainQueue(), geodesy);
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
      .text = linuxos::makeText(),
      .dateFormatters = dateFormatters,
      .urls = linuxos::makeURLFormat(),
      .urlSession = http,
      .persistentContainers =
          std::make_shared<linuxos::SQLitePersistentContainerFactory>(directory.path() / "data"),
      .geodesy = geodesy,
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

std::string SDKFixture::requestLine(const platform::URLRequest& request) {
  std::string_view text = request.url.text;
  const std::string prefix = std::string(kBaseURL) + "/";
  if (text.starts_with(prefix)) text.remove_prefix(prefix.size());
  return request.method + " " + std::string(text);
}

SDKFixture::Answer SDKFixture::answerTo(const platform::URLRequest& request) {
  const std::string line = requestLine(request);
  noteRequest(request);
  const auto exact = answers_.find(line);
  const auto entry = exact == answers_.end() ? answers_.find(" ") : exact;
  if (entry == answers_.end()) return Answer::failure("No answer was given for " + line);
  return entry->second;
}

void SDKFixture::noteRequest(const platform::URLRequest& request) {
  std::string line = requestLine(request);
  for (const auto& [name, value] : request.headers) {
    // Token token="..."
    if (name == "Authorization") line += " as " + value.substr(13, value.size() - 14);
  }
  if (request.body) {
    // {"data":...}
    line += " " + request.body->substr(8, request.body->size() - 9);
  }
  note(line);
}

std::string SDKFixture::happened(std::initializer_list<std::string_view> firstWords) {
  std::string text;
  for (const std::string& line : journal_->take()) {
    const std::string_view word = std::string_view(line).substr(0, line.find(' '));
    if (std::empty(firstWords) || std::ranges::count(firstWords, word)) text += "\n" + line;
  }
  return text;
}

std::vector<std::string> SDKFixture::bodies(std::string_view method, std::string_view path) const {
  const std::string line = std::string(method) + " " + std::string(path);
  std::vector<std::string> bodies;
  for (const auto& request : requests()) {
    if (requestLine(request) == line) bodies.push_back(request.body.value_or("(none)"));
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
          const std::string object = objectText(notification.object);
          note("posted " + std::string(notification.name.text) +
               (object.empty() ? "" : " " + object));
        }));
  }
}

}  // namespace ovinta::test
