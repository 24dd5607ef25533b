#include "tests/bindings/objc/World.h"

#include <cstdlib>

#include "platform/linux/Linux.h"
#include "platform/simulation/SimulatedBundle.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

using sandbox::Speaker;

namespace {

constexpr platform::Date kStart{std::chrono::seconds{1614889800}};
constexpr std::chrono::seconds kPatience{30};

platform::Services realServices(const std::filesystem::path& directory) {
  platform::Services services =
      platform::linuxos::makeServices({.applicationID = "objc-tests", .dataDirectory = directory});
  services.mainBundle = std::make_shared<platform::simulation::SimulatedBundle>(
      platform::simulation::SimulatedBundle::Texts{{"CFBundleShortVersionString", "1.0"}});
  return services;
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

std::string World::offerOrder() { return Speaker(sandbox_).offerOrder(); }

std::string World::resetToken(const std::string& email) {
  return Speaker(sandbox_).resetToken(email);
}

void World::ask(const std::string& method, const std::string& path) {
  Speaker(sandbox_).send(method, path);
}

}  // namespace ovinta::test
