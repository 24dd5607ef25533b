#include "tests/support/SDKFixture.h"

#include <algorithm>
#include <array>
#include <deque>
#include <mutex>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "platform/JSON.h"
#include "platform/linux/DirectoryBundle.h"
#include "platform/linux/InMemoryUserNotificationCenter.h"
#include "platform/linux/LibraryBundle.h"
#include "platform/linux/SQLitePersistentContainer.h"
#include "platform/linux/TextServices.h"
#include "platform/linux/UnavailableLocationServices.h"
#include "platform/linux/UnknownBatteryDevice.h"
#include "platform/standard/Standard.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ZonedDateFormatters.h"

namespace ovinta::test {

namespace linux = platform::linux;
namespace simulation = platform::simulation;
namespace standard = platform::standard;

class DrivenQueues : public platform::OperationQueueFactory {
 public:
  std::shared_ptr<platform::OperationQueue> makeQueue() override {
    return std::make_shared<Queue>(*this);
  }

  bool runAll() {
    bool ran = false;
    while (true) {
      std::shared_ptr<platform::Operation> operation;
      {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty()) return ran;
        operation = std::move(waiting_.front());
        waiting_.pop_front();
      }
      operation->main();
      ran = true;
    }
  }

 private:
  class Queue : public platform::OperationQueue {
   public:
    explicit Queue(DrivenQueues& queues) : queues_(queues) {}
    void addOperation(std::shared_ptr<platform::Operation> operation) override {
      const std::lock_guard lock(queues_.mutex_);
      queues_.waiting_.push_back(std::move(operation));
    }
    void setMaxConcurrentOperationCount(std::size_t count) override { count_ = count; }
    std::size_t maxConcurrentOperationCount() const override { return count_; }

   private:
    DrivenQueues& queues_;
    std::size_t count_ = 0;
  };

  std::mutex mutex_;
  std::deque<std::shared_ptr<platform::Operation>> waiting_;
};

SDKFixture::SDKFixture()
    : http(std::make_shared<simulation::AnsweringURLSession>(
          [this](const platform::URLRequest& request) { return answerTo(request); })) {
  services.clock = time.clock();
  services.log = std::make_shared<RecordingLog>();
  services.mainQueue = time.mainQueue();
  services.operationQueues = std::make_shared<DrivenQueues>();
  services.notificationCenter = standard::makeNotificationCenter();
  services.settings = standard::makeInMemorySettingsStore();
  services.mainBundle = std::make_shared<linux::DirectoryBundle>(directory.path());
  services.libraryBundle = std::make_shared<linux::LibraryBundle>();
  services.text = linux::makeText();
  services.dateFormatters =
      std::make_shared<ZonedDateFormatters>(linux::makeDateFormatterFactory());
  services.urls = linux::makeURLFormat();
  services.urlSession = http;
  services.persistentContainers =
      std::make_shared<linux::SQLitePersistentContainerFactory>(directory.path() / "data");
  services.geodesy = linux::makeGeodesy();
  services.location = std::make_shared<linux::UnavailableLocationServices>(services.mainQueue);
  services.userNotifications =
      std::make_shared<linux::InMemoryUserNotificationCenter>(*services.operationQueues);
  services.device = std::make_shared<linux::UnknownBatteryDevice>();

  platform::install(services);
  OvintaState::replace();
  UserDefaultsKey::apiBase.set(std::string(kBaseURL));
  observeNotifications();
}

// The library keeps its services; they must not reach back into a test that is over.
SDKFixture::~SDKFixture() {
  http->setService([](const auto&) { return Answer::failure("the test is over"); });
}

void SDKFixture::restartWith(const std::function<void(platform::Services&)>& change) {
  change(services);
  platform::install(services);
  OvintaState::replace();
  observeNotifications();
}

void SDKFixture::answer(std::string_view method, std::string_view path,
                        std::vector<Answer> answers) {
  std::ranges::reverse(answers);
  answers_.insert_or_assign(std::string(method) + " " + std::string(path), std::move(answers));
}

void SDKFixture::answer(std::string_view method, std::string_view path, Answer answer) {
  this->answer(method, path, std::vector{std::move(answer)});
}

SDKFixture::Answer SDKFixture::dataAnswer(platform::Value record) {
  return Answer::json(200, dataText(std::move(record)));
}

SDKFixture::Answer SDKFixture::ordersAnswer(const std::vector<platform::Dictionary>& records) {
  return dataAnswer(platform::List(records.begin(), records.end()));
}

std::string SDKFixture::requestLine(const platform::URLRequest& request) {
  std::string_view text = request.url.text;
  if (text.starts_with(kBaseURL)) text.remove_prefix(kBaseURL.size());
  return request.method + " " + std::string(text);
}

SDKFixture::Answer SDKFixture::answerTo(const platform::URLRequest& request) {
  const std::string line = requestLine(request);
  const auto entry = answers_.find(line);
  if (entry == answers_.end()) return Answer::failure("No answer was given for " + line);
  std::vector<Answer>& answers = entry->second;
  Answer next = answers.back();
  if (answers.size() > 1) answers.pop_back();
  return next;
}

std::vector<std::string> SDKFixture::requestLines() const {
  std::vector<std::string> lines;
  for (const auto& request : requests()) lines.push_back(requestLine(request));
  return lines;
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
  auto& queues = static_cast<DrivenQueues&>(*services.operationQueues);
  bool busy = true;
  while (busy) {
    busy = queues.runAll();
    busy = http->deliverAll() > 0 || busy;
    const std::size_t waiting = time.pendingTaskCount();
    time.runUntilIdle();
    busy = time.pendingTaskCount() != waiting || busy;
  }
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
    observers_.push_back(services.notificationCenter->addObserver(
        name, [this](const auto& notification) { notifications_.push_back(notification); }));
  }
}

std::vector<std::string> SDKFixture::postedNames() const {
  std::vector<std::string> names;
  for (const auto& notification : notifications_) names.emplace_back(notification.name.text);
  return names;
}

std::vector<platform::Notification> SDKFixture::posted(platform::NotificationName name) const {
  std::vector<platform::Notification> matching;
  std::ranges::copy_if(notifications_, std::back_inserter(matching),
                       [name](const auto& notification) { return notification.name == name; });
  return matching;
}

std::vector<std::string> SDKFixture::logLines() const {
  return static_cast<RecordingLog&>(*services.log).lines();
}

}  // namespace ovinta::test
