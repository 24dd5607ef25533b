#include "platform/linux/ApplicationOptions.h"

#include "platform/linux/PrivateDirectory.h"
#include "platform/linux/dbus/Bus.h"

namespace ovinta::platform::linux {

std::string applicationIDOf(const Options& options) {
  return options.applicationID.value_or(executablePath().filename().string());
}

std::string systemBusAddressOf(const Options& options) {
  return options.systemBusAddress.value_or(dbus::systemBusAddress());
}

std::optional<std::filesystem::path> dataDirectoryOf(const Options& options) {
  if (options.dataDirectory) return std::filesystem::absolute(*options.dataDirectory);
  return defaultDataDirectory(applicationIDOf(options));
}

}  // namespace ovinta::platform::linux
