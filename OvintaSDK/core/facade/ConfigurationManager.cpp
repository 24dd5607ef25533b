#include "OvintaSDK/core/facade/ConfigurationManager.h"

#include <utility>

#include "OvintaSDK/api/GetAppInfoOperation.h"

namespace ovinta {

ConfigurationManager::~ConfigurationManager() = default;

void ConfigurationManager::fetch(ConfigurationCallback callback) {
  if (const auto api = APIClient::of(context_)) {
    api->send<GetAppInfoOperation>(std::move(callback));
  }
}

}  // namespace ovinta
