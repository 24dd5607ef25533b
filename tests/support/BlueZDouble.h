#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// BlueZ 5.66 as one client sees it: the same names, signatures, error names and rules. A device is
/// heard only by an adapter that discovers with a filter for low energy and duplicates; what comes
/// up at first is told with all its properties, afterwards each advertisement by its strength.
class BlueZDouble {
 public:
  using Bytes = std::vector<std::uint8_t>;

  explicit BlueZDouble(const PrivateBus& bus);

  void addAdapter(const std::string& name, bool isPowered = true);
  /// With all its devices, as when it is pulled out.
  void removeAdapter(const std::string& name);
  void setPowered(const std::string& name, bool isPowered);
  /// Somebody ends the discovery, behind the client's back.
  void endDiscovery(const std::string& name);
  /// Comes back with the adapters but without anything that a client asked for.
  void restart();

  /// One advertisement, near the adapter.
  void advertise(const std::string& adapter, const std::string& device, const Bytes& data,
                 std::int16_t rssi, std::uint16_t company = 0x004C);
  /// What is no property of BlueZ's, or of another type.
  void tell(const std::string& adapter, const std::string& device,
            const platform::linux::dbus::Properties& properties);

  bool isDiscovering(const std::string& adapter);

  /// While there is one, every discovery is refused with this error.
  void refuse(std::optional<platform::linux::dbus::Failure> failure);

  ServiceDouble& service() { return service_; }

 private:
  struct Adapter {
    bool isFiltered = false;
    bool isDiscovering = false;
    std::map<std::string, platform::linux::dbus::Properties> devices = {};
  };

  ServiceDouble::Answer answer(const ServiceDouble::Call& call);
  ServiceDouble::Answer setFilter(Adapter& adapter, const ServiceDouble::Call& call);
  ServiceDouble::Answer start(const std::string& path, Adapter& adapter);
  ServiceDouble::Answer stop(const std::string& path, Adapter& adapter);
  ServiceDouble::Answer objects();
  void setDiscovering(const std::string& path, bool isDiscovering);

  std::map<std::string, Adapter> adapters_;
  std::optional<platform::linux::dbus::Failure> refusal_;
  ServiceDouble service_;
};

}  // namespace ovinta::test
