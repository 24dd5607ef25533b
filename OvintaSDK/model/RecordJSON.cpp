#include "OvintaSDK/model/RecordJSON.h"

#include "OvintaSDK/model/wire/OrderWire.h"
#include "OvintaSDK/model/wire/SiteWire.h"

namespace ovinta {
namespace {

template <class Encode>
std::optional<std::string> written(Encode encode) {
  platform::JSONWriter writer;
  try {
    encode(writer);
  } catch (const platform::CodingError&) {
    return std::nullopt;
  }
  return writer.take();
}

}  // namespace

std::optional<std::string> jsonText(const Order& order) {
  return written([&](auto& writer) { wire::encodeOrder(writer, order); });
}

std::optional<std::string> jsonText(const Site& site) {
  return written([&](auto& writer) { wire::WireForm<Site>::encode(writer, site); });
}

}  // namespace ovinta
