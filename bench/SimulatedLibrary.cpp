#include "bench/SimulatedLibrary.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "OvintaSDK/model/RecordJSON.h"
#include "platform/linux/Linux.h"
#include "platform/portable/LibraryBundle.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"
#include "platform/simulation/SimulatedDevice.h"
#include "platform/simulation/http/HoldingURLSession.h"
#include "platform/simulation/location/SimulatedUserNotificationCenter.h"

namespace ovinta::bench {

namespace simulation = platform::simulation;
namespace portable = platform::portable;

namespace {

constexpr platform::Date kStart{std::chrono::seconds{1614889800}};

class SilentLog : public platform::Log {
 public:
  void write(std::string_view /*line*/) override {}
};

std::string orderText(std::size_t id) {
  char text[1024];
  std::snprintf(text, sizeof text,
                R"({"id":%zu,"site_id":42,"state":"created","customer_state":"created",)"
                R"("partner_identifier":"P-2021-%06zu","site_beacon_regions":[)"
                R"({"uuid":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","major":%zu,"minor":%zu}],)"
                R"("project_mobile_flow_always_show_vehicle_info_fields":false,)"
                R"("project_mobile_flow_customer_name_editing_enabled":false,)"
                R"("project_mobile_flow_pickup_type_selection_enabled":false,)"
                R"("project_mobile_flow_require_vehicle_info_if_visible":false})",
                id, id, id / 65536, id % 65536);
  return text;
}

platform::Services makeServices(simulation::VirtualTime& time,
                                std::shared_ptr<simulation::DrivenOperationQueueFactory> queues,
                                std::shared_ptr<simulation::SimulatedLocation> location,
                                std::shared_ptr<platform::PersistentContainerFactory> store) {
  const auto values = platform::linuxos::makeValueServices();
  return {
      .clock = time.clock(),
      .log = std::make_shared<SilentLog>(),
      .mainQueue = time.mainQueue(),
      .operationQueues = std::move(queues),
      .notificationCenter = portable::makeNotificationCenter(),
      .settings = portable::makeInMemorySettingsStore(),
      .mainBundle = std::make_shared<simulation::SimulatedBundle>(),
      .libraryBundle = std::make_shared<portable::LibraryBundle>(),
      .text = values.text,
      .dateFormatters = values.dateFormatters,
      .urls = values.urls,
      .urlSession = std::make_shared<simulation::HoldingURLSession>(),
      .persistentContainers = std::move(store),
      .geodesy = values.geodesy,
      .location = std::move(location),
      .userNotifications = std::make_shared<simulation::SimulatedUserNotificationCenter>(
          time.mainQueue(), values.geodesy),
      .device = std::make_shared<simulation::SimulatedDevice>(),
  };
}

}  // namespace

SimulatedLibrary::SimulatedLibrary()
    : SimulatedLibrary(portable::makeInMemoryPersistentContainerFactory()) {}

SimulatedLibrary::SimulatedLibrary(std::shared_ptr<platform::PersistentContainerFactory> store)
    : time(kStart),
      queues(std::make_shared<simulation::DrivenOperationQueueFactory>()),
      location(std::make_shared<simulation::SimulatedLocation>(
          time.mainQueue(), platform::linuxos::makeValueServices().geodesy)),
      services(makeServices(time, queues, location, std::move(store))),
      library([this]() -> const platform::Services& { return services; }) {
  location->setAuthorizationStatus(platform::kAuthorizedAlways);
}

OrderList makeOpenOrders(std::size_t count) {
  // Records read their dates by the installed services, which last as long as the process.
  static const auto& device = *new SimulatedLibrary;
  platform::install(device.services);
  OrderList orders;
  orders.reserve(count);
  for (std::size_t id = 1; id <= count; ++id) {
    auto order = readRecord<Order>(orderText(id));
    if (!order) std::abort();
    orders.push_back(*std::move(order));
  }
  return orders;
}

}  // namespace ovinta::bench
