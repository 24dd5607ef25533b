#include "platform/linux/Diagnosis.h"

#include <utility>

#include "platform/linux/diagnosis/DiagnosisRun.h"
#include "platform/linux/location/PositionProviders.h"
#include "platform/linux/main/ApplicationOptions.h"
#include "platform/linux/main/GLibMainQueue.h"
#include "platform/linux/main/MainThread.h"
#include "platform/linux/main/SystemLog.h"

namespace ovinta::platform::linuxos {
namespace {

Surroundings surroundingsOf(const Options& options, const Services& services) {
  const auto bus = [&](std::string address) {
    return std::make_shared<dbus::Bus>(std::move(address), services.mainQueue, services.log);
  };
  Surroundings around{.mainQueue = services.mainQueue,
                      .systemBus = bus(systemBusAddressOf(options)),
                      .sessionBus = bus(dbus::sessionBusAddress()),
                      .applicationID = applicationIDOf(options),
                      .positionSource = chosenSource(options.positionSource),
                      .positionProvider = nullptr,
                      .dataDirectory = dataDirectoryOf(options),
                      .usesNotifyAgent = options.usesNotifyAgent && !isSandboxed()};
  around.positionProvider = makePositionProvider(around.positionSource, around.applicationID,
                                                 around.systemBus, around.sessionBus, services);
  return around;
}

}  // namespace

void diagnose(const Options& options, std::function<void(const std::vector<Finding>&)> completion,
              std::shared_ptr<MainQueue> mainQueue) {
  rememberMainThread();
  Services services = makeValueServices();
  services.log = options.log ? options.log : std::make_shared<SystemLog>(applicationIDOf(options));
  services.mainQueue =
      mainQueue ? std::move(mainQueue)
                : std::make_shared<GLibMainQueue>(GLibMainQueue::Options{.log = services.log});
  services.mainQueue->async(
      [run = std::make_shared<DiagnosisRun>(surroundingsOf(options, services),
                                            std::move(completion))] { run->begin(); });
}

}  // namespace ovinta::platform::linuxos
