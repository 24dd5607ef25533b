#include "OvintaSDK/location/BeaconIdentifiers.h"
#include "OvintaSDK/location/BeaconRegion.h"

namespace ovinta {
namespace {

/// Folds one number after another into a hash, by the multiplicative step of FNV-1a (Fowler, Noll,
/// Vo; RFC 9923).
class Hasher {
 public:
  explicit Hasher(const platform::UUID& uuid) {
    for (const std::uint8_t byte : uuid.bytes) add(byte);
  }
  Hasher& add(std::size_t number) {
    constexpr std::size_t kPrime = 0x00000100000001B3;
    hash_ = (hash_ ^ number) * kPrime;
    return *this;
  }
  Hasher& add(const std::optional<std::uint16_t>& number) {
    return number ? add(std::size_t{1}).add(std::size_t{*number}) : add(std::size_t{0});
  }
  std::size_t hash() const { return hash_; }

 private:
  std::size_t hash_ = 0xCBF29CE484222325;
};

}  // namespace
}  // namespace ovinta

std::size_t std::hash<ovinta::BeaconRegion>::operator()(
    const ovinta::BeaconRegion& region) const noexcept {
  return ovinta::Hasher(region.uuid).add(region.major).add(region.minor).hash();
}

std::size_t std::hash<ovinta::BeaconIdentifiers>::operator()(
    const ovinta::BeaconIdentifiers& identifiers) const noexcept {
  return ovinta::Hasher(identifiers.uuid)
      .add(std::size_t{identifiers.major})
      .add(std::size_t{identifiers.minor})
      .hash();
}
