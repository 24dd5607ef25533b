#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "platform/Value.h"

namespace ovinta {

/// Gets the app's configuration; absent, without an error, when the answer is an object or array
/// that holds none. A bare value is no answer.
class GetAppInfoOperation final : public DecodingOperation<std::optional<platform::Dictionary>> {
 public:
  GetAppInfoOperation(APIClient api, Callback callback)
      : DecodingOperation(std::move(api), std::move(callback)) {}

  std::string_view errorContext() const override { return "getting configuration"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::app()}; }
  std::optional<platform::Dictionary> decode(const platform::JSONValue& answer) const override {
    const platform::Value value = answer.copy();
    if (!value.as<platform::Dictionary>() && !value.as<platform::List>()) {
      throw platform::CodingError(platform::CodingError::Kind::dataCorrupted,
                                  "The given data is a bare value.");
    }
    const auto* fields = value.as<platform::Dictionary>();
    const auto* data = fields ? platform::find<platform::Dictionary>(*fields, "data") : nullptr;
    return data ? std::optional(*data) : std::nullopt;
  }
};

}  // namespace ovinta
