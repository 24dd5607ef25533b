#include "OvintaSDK/core/ConfigurationManager.h"

#include "OvintaSDK/api/GetAppInfoOperation.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {

void ConfigurationManager::fetch(ConfigurationCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return;
  OvintaState::current().apiQueue().addOperation(
      std::make_shared<GetAppInfoOperation>(*apiURL, std::move(callback)));
}

}  // namespace ovinta
