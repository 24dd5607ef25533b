#include "platform/linux/main/ApplicationOptions.h"

#include "platform/linux/dbus/Bus.h"
#include "platform/linux/storage/PrivateDirectory.h"

namespace ovinta::platform::linuxos {

std::string applicationIDOf(const Options& options) {
  return options.applicationID.value_or(executablePath().filename().string());
}

std::string systemBusAddressOf(const Options& options) {
  return options.systemBusAddress.value_or(dbus::systemBusAddress());
}

std::optional<std::filesystem::path> dataDirectoryOf(const Options& options) {
  if (!options.dataDirectory) return defaultDataDirectory(applicationIDOf(options));
  std::error_code error;
  auto directory = std::filesystem::absolute(*options.dataDirectory, error);
  return error ? *options.dataDirectory : directory;
}

std::filesystem::path mainBundleDirectoryOf(const Options& options) {
  const auto directory = options.mainBundleDirectory.value_or(executablePath().parent_path());
  std::error_code error;
  auto absolute = std::filesystem::absolute(directory, error);
  return error ? std::filesystem::path() : absolute;
}

}  // namespace ovinta::platform::linuxos
