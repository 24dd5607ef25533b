#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/sites/SitesManager.h"
#include "platform/Services.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"
#include "platform/simulation/SimulatedDevice.h"
#include "platform/simulation/http/AnsweringURLSession.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/location/SimulatedUserNotificationCenter.h"
#include "platform/simulation/time/DrivenOperationQueueFactory.h"
#include "platform/simulation/time/VirtualTime.h"
#include "tests/support/CannedRecords.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ZonedDateFormatters.h"

namespace ovinta::test {

/// The base URL in the settings store when a test begins.
inline constexpr std::string_view kBaseURL = "https://service.test";

/// Now, when a test begins: 2021-03-04T20:30:00Z.
inline constexpr platform::Date kStart{std::chrono::seconds{1614889800}};

/// What the journal says of a callback's argument or a notification's object; "" for none.
std::string textOf(const OrderPtr& order);
std::string textOf(const std::optional<OrderList>& orders);
std::string textOf(const CustomerPtr& customer);
std::string textOf(const std::optional<SiteList>& sites);
std::string textOf(const std::optional<Pagination>& pagination);
std::string textOf(const std::optional<platform::Dictionary>& configuration);
/// Title and message.
std::string textOf(const ErrorPtr& error);

/// Lines in the order of their coming; those of the log among them. May be used from any thread.
class Journal : public platform::Log {
 public:
  void write(std::string_view line) override { note("log " + std::string(line)); }
  void note(std::string_view line) { lines_.write(line); }
  /// The lines that nobody has taken yet.
  std::vector<std::string> take();

 private:
  platform::simulation::RecordingLog lines_;
  std::size_t taken_ = 0;
};

/// A fresh library on a platform where nothing happens by itself: time, queues and HTTP go on only
/// inside `drain` and `advance`. Text, dates, URLs, distances and the order store are the real
/// ones; the store lies in a directory of the test's own. The library's version is 9.4.8, the
/// application's 1.2.3. The settings hold a base URL, nobody is signed in, and `Ovinta::configure`
/// was not called.
class SDKFixture : public ::testing::Test {
 private:
  std::shared_ptr<Journal> journal_ = std::make_shared<Journal>();

 protected:
  using Answer = platform::simulation::Answer;

  SDKFixture();
  ~SDKFixture() override;

  /// Installs the services as changed by `change`, and starts the library afresh on them.
  void restartWith(const std::function<void(platform::Services&)>& change);

  // HTTP. A request that no answer was given for fails.

  /// What the endpoint answers from now on.
  void answer(std::string_view method, std::string_view path, Answer answer);
  /// What every endpoint answers from now on.
  void answerAll(Answer answer);
  /// An answer of status 200 with {"data": record}.
  static Answer dataAnswer(platform::Value record);

  /// The requests so far.
  std::vector<platform::URLRequest> requests() const { return http->requests(); }
  /// The bodies of the requests to one endpoint, its path below the base URL; "(none)" for one
  /// without a body.
  std::vector<std::string> bodies(std::string_view method, std::string_view path) const;

  // Progress.

  /// Runs operations, answers requests and runs main-queue tasks that are due, until nothing is
  /// left to do. Time does not move.
  void drain();
  /// Lets time pass, one second after the other, and drains before and after each.
  void advance(std::chrono::seconds interval);

  // What happens.

  /// What has happened since the last call, in its order; a line break before each of
  /// - "log <line>",
  /// - "<METHOD> <path> as <customer's token> <what "data" holds>", when a request is answered,
  /// - "posted <name> <object>",
  /// - "told <arguments>", by `tell`.
  /// With words given: only the lines that begin with one of them.
  std::string happened(std::initializer_list<std::string_view> firstWords = {});

  /// The same once everything is drained.
  std::string outcome(std::initializer_list<std::string_view> firstWords = {}) {
    drain();
    return happened(firstWords);
  }

  void note(std::string_view line) { journal_->note(line); }

  /// A callback that notes its arguments.
  auto tell() {
    return [this](const auto&... arguments) {
      std::string told;
      for (const std::string& text : {textOf(arguments)...}) {
        if (!text.empty()) told += (told.empty() ? " " : ", ") + text;
      }
      note("told" + (told.empty() ? " nothing" : told));
    };
  }

  // What the library knows and says.

  /// Makes the canned customer the current one.
  CustomerPtr signIn();
  /// Has the service answer these orders, fetches them, and drains.
  void fetchOrders(const std::vector<platform::Dictionary>& records);
  /// An answer with a list of orders.
  static Answer ordersAnswer(const std::vector<platform::Dictionary>& records);

  std::vector<std::string> logLines() const { return log->lines(); }

  TemporaryDirectory directory;
  platform::simulation::VirtualTime time{kStart};
  std::shared_ptr<platform::simulation::AnsweringURLSession> http;
  std::shared_ptr<platform::simulation::DrivenOperationQueueFactory> queues;
  std::shared_ptr<platform::simulation::RecordingLog> log;
  std::shared_ptr<ZonedDateFormatters> dateFormatters;
  std::shared_ptr<platform::simulation::SimulatedBundle> mainBundle;
  /// Holds the data model.
  std::shared_ptr<platform::simulation::SimulatedBundle> libraryBundle;
  std::shared_ptr<platform::simulation::SimulatedLocation> location;
  std::shared_ptr<platform::simulation::SimulatedDevice> device;
  std::shared_ptr<platform::simulation::SimulatedUserNotificationCenter> userNotifications;
  /// The services in force: those above and the rest.
  platform::Services services;

 private:
  platform::Services makeServices();
  static std::string requestLine(const platform::URLRequest& request);
  void noteRequest(const platform::URLRequest& request);
  Answer answerTo(const platform::URLRequest& request);
  void observeNotifications();

  std::map<std::string, Answer, std::less<>> answers_;
  std::vector<std::unique_ptr<platform::NotificationObserver>> observers_;
};

}  // namespace ovinta::test
