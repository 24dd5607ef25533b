#include "cli/client/SandboxTools.h"

#include <stdexcept>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/ClientServices.h"
#include "cli/client/Waiting.h"

namespace ovinta::cli {
namespace {

std::string sandboxURL(const ClientOptions& options) {
  if (options.baseURL) return *options.baseURL;
  platform::install(clientServices(options));
  refuseUnkept();
  const auto address = UserDefaultsKey::apiBase.stringValue();
  if (address) return *address;
  throw std::runtime_error("no sandbox was used yet: name its address with --base-url");
}

}  // namespace

void addToolOptions(CLI::App& command, ClientOptions& options) {
  addServiceAddress(command, options,
                    "The sandbox's address; the one that was used last, unless given");
  addDataDirectoryOption(command, options);
  addJSONOption(command, options.json);
}

ExitCode runTool(const ClientOptions& options,
                 const std::function<ExitCode(const SandboxTool&)>& run) {
  const Output output(options.json);
  return output.guard([&] {
    const std::string baseURL = sandboxURL(options);
    SandboxClient client(baseURL, options.token);
    return run({.client = client,
                .output = output,
                .json = options.json,
                .baseURL = baseURL,
                .token = options.token});
  });
}

platform::Value ask(const SandboxTool& tool, const std::string& method, const std::string& path,
                    const std::optional<platform::Value>& record) {
  const Waiting waiting("Waiting for the sandbox");
  return tool.client.ask(method, path, record);
}

}  // namespace ovinta::cli
