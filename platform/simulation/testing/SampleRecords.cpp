#include "platform/simulation/testing/SampleRecords.h"

#include <string>
#include <utility>

#include "platform/JSONText.h"

namespace ovinta::platform::simulation {
namespace {

Dictionary completed(Dictionary fields, Dictionary defaults) {
  fields.merge(std::move(defaults));
  return fields;
}

/// The number as decimal text, in the shortest form that reads back to it.
std::string decimal(double number) {
  const auto text = jsonText(number);
  return text ? *text : "0";
}

}  // namespace

Dictionary sampleCustomer(Dictionary fields) {
  return completed(std::move(fields), {{"api_token", kSampleToken},
                                       {"name", "Alex"},
                                       {"car_type", "Hatchback"},
                                       {"car_color", "Green"},
                                       {"license_plate", "ABC 123"}});
}

Dictionary sampleOrder(std::int64_t id, Dictionary fields) {
  return completed(std::move(fields),
                   {{"id", id},
                    {"site_id", 42},
                    {"state", "created"},
                    {"customer_state", "created"},
                    {"project_mobile_flow_always_show_vehicle_info_fields", false},
                    {"project_mobile_flow_customer_name_editing_enabled", false},
                    {"project_mobile_flow_pickup_type_selection_enabled", false},
                    {"project_mobile_flow_require_vehicle_info_if_visible", false}});
}

Dictionary sampleSite(std::int64_t id, Dictionary fields) {
  return completed(std::move(fields), {{"id", id}});
}

Dictionary sampleGeofence(double latitude, double longitude, double radius) {
  return {{"latitude", decimal(latitude)},
          {"longitude", decimal(longitude)},
          {"radius_meters", radius}};
}

}  // namespace ovinta::platform::simulation
