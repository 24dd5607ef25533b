#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "platform/Value.h"

namespace ovinta {

/// Gets the app's configuration; absent, without an error, when the answer holds none.
class GetAppInfoOperation final : public DecodingOperation<std::optional<platform::Dictionary>> {
 public:
  GetAppInfoOperation(std::string apiURL, Callback callback)
      : DecodingOperation(std::move(apiURL), std::move(callback)) {}

  std::string_view errorContext() const override { return "getting configuration"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::app()}; }
  std::optional<platform::Dictionary> decode(const platform::JSONValue& answer) const override {
    const platform::Value value = answer.copy();
    const auto* fields = value.as<platform::Dictionary>();
    const auto* data = fields ? platform::find<platform::Dictionary>(*fields, "data") : nullptr;
    return data ? std::optional(*data) : std::nullopt;
  }
};

}  // namespace ovinta
