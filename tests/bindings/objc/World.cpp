#include "tests/bindings/objc/World.h"

#include <httplib.h>

#include <cstdlib>

#include "platform/JSON.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/SimulatedBundle.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

using platform::Dictionary;
using platform::Value;

namespace {

constexpr platform::Date kStart{std::chrono::seconds{1614889800}};
constexpr std::chrono::seconds kPatience{30};

platform::Services realServices(const std::filesystem::path& directory) {
  platform::Services services =
      platform::linux::makeServices({.applicationID = "objc-tests", .dataDirectory = directory});
  services.mainBundle = std::make_shared<platform::simulation::SimulatedBundle>(
      platform::simulation::SimulatedBundle::Texts{{"CFBundleShortVersionString", "1.0"}});
  return services;
}

/// What the sandbox answers under "data".
Value answered(const sandbox::Sandbox& sandbox, httplib::Request request) {
  httplib::Client client("127.0.0.1", sandbox.port());
  const httplib::Result result = client.send(request);
  const auto json = result ? platform::parseJSON(result->body) : std::nullopt;
  if (!json || !json->as<Dictionary>()) return {};
  const auto data = json->as<Dictionary>()->find("data");
  return data == json->as<Dictionary>()->end() ? Value() : data->second;
}

httplib::Request request(const std::string& method, const std::string& path,
                         const std::string& body = {}) {
  httplib::Request request;
  request.method = method;
  request.path = path;
  request.body = body;
  return request;
}

}  // namespace

World& World::shared() {
  // Made first, it goes after the last operation that writes to it.
  static const TemporaryDirectory directory;
  static World world(directory.path());
  return world;
}

World::World(const std::filesystem::path& directory)
    : log_(std::make_shared<platform::simulation::RecordingLog>()),
      simulation_(realServices(directory), kStart, {.log = log_}) {
  if (sandbox_.start()) std::abort();
  platform::install(simulation_.services());
}

bool World::waitUntil(const std::function<bool()>& condition) {
  return simulation_.time().waitUntil(condition, kPatience);
}

std::string World::offerOrder() {
  const Value order =
      answered(sandbox_, request("POST", "/sandbox/orders",
                                 R"({"data":{"site_id":42,"partner_identifier":"offered"}})"));
  return *platform::find<std::string>(*order.as<Dictionary>(), "redemption_code");
}

std::string World::resetToken(const std::string& email) {
  const Value customers = answered(sandbox_, request("GET", "/sandbox/customers"));
  for (const Value& customer : *customers.as<platform::List>()) {
    const auto& record = *customer.as<Dictionary>();
    const auto* address = platform::find<std::string>(record, "email");
    const auto* token = platform::find<std::string>(record, "reset_password_token");
    if (address && *address == email && token) return *token;
  }
  return {};
}

void World::ask(const std::string& method, const std::string& path) {
  answered(sandbox_, request(method, path));
}

}  // namespace ovinta::test
