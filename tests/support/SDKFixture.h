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

#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/core/Guarded.h"
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
#include "tests/support/Steps.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ZonedDateFormatters.h"

namespace ovinta::test {

/// The base URL in the settings store when a test begins.
inline constexpr std::string_view kBaseURL = "https://service.test";

/// Now, when a test begins: 2021-03-04T20:30:00Z.
inline constexpr platform::Date kStart{std::chrono::seconds{1614889800}};

template <class List>
Ids idsOf(const List& list) {
  Ids ids;
  for (const auto& entry : list) ids.push_back(entry->id);
  return ids;
}
inline Item itemOf(const Order& order) { return theOrder(order.id); }
inline Item itemOf(const OrderList& orders) { return theOrders(idsOf(orders)); }
inline Item itemOf(const Customer& customer) { return theCustomer(customer.token); }
inline Item itemOf(const SiteList& sites) { return theSites(idsOf(sites)); }
inline Item itemOf(const Pagination& page) { return thePage(page.currentPage, page.totalPages); }
inline Item itemOf(const platform::Dictionary& configuration) {
  return {"configuration", configuration};
}
inline Item itemOf(const OvintaError& error) {
  return theError(error.title(), error.localizedDescription());
}
/// Of what a pointer points at or an optional holds.
template <class Holder>
requires requires(const Holder& holder) { *holder; }
Item itemOf(const Holder& holder) { return holder ? itemOf(*holder) : Item{}; }

/// The steps in the order of their coming; those of the log among them. May be used from any
/// thread.
class Journal : public platform::Log {
 public:
  void write(std::string_view line) override { note(logged(std::string(line))); }
  void note(const Step& step) {
    steps_.change([&step](Steps& steps) { steps.push_back(step); });
  }
  /// The steps that nobody has taken yet.
  Steps take() { return steps_.exchange({}); }

 private:
  Guarded<Steps> steps_;
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

  /// What has happened since the last call; with kinds of steps given, of those alone.
  Steps happened(std::initializer_list<Step::Kind> kinds = {});

  /// The same once everything is drained.
  Steps outcome(std::initializer_list<Step::Kind> kinds = {}) {
    drain();
    return happened(kinds);
  }

  /// A callback that notes its arguments.
  auto tell() {
    return [this](const auto&... arguments) { journal_->note(told(itemOf(arguments)...)); };
  }

  // What the library knows and says.

  /// Makes the canned customer the current one.
  CustomerPtr signIn();
  /// Has the service answer these orders, fetches them, and drains.
  void fetchOrders(const std::vector<platform::Dictionary>& records);
  /// The report, as the canned customer, that the user may be followed so for the order.
  static Step reportedPermission(std::int64_t order, const std::string& permission,
                                 const std::string& token = kToken);
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
  Answer answerTo(const platform::URLRequest& request);
  void observeNotifications();

  std::map<std::string, Answer, std::less<>> answers_;
  std::vector<std::unique_ptr<platform::NotificationObserver>> observers_;
};

}  // namespace ovinta::test
