#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// BlueZ 5.66 as its only client sees it: the same names, signatures, errors and rules. Devices are
/// heard by an adapter that discovers, with a filter for low energy and duplicates; a new one is
/// told with all its properties, further advertisements by their strength and what else is new. An
/// adapter that goes takes its devices with it.
class BlueZDouble {
 public:
  using Bytes = std::vector<std::uint8_t>;

  explicit BlueZDouble(const replay::PrivateBus& bus);

  void addAdapter(const std::string& name, bool isPowered = true);
  void removeAdapter(const std::string& name);
  void setPowered(const std::string& name, bool isPowered);
  /// Somebody ends the discovery, behind the client's back.
  void endDiscovery(const std::string& name);
  /// Comes back with the adapters, but without anything that a client asked for.
  void restart();
  /// Leaves StartDiscovery without an answer, and refuses to stop meanwhile, until `answerStarts`.
  void holdStarts();
  void answerStarts();
  /// Has the next call of the method fail; with `kNoReply`, after it was done.
  void fail(const std::string& method, const dbus::Failure& failure);

  /// Without data: something that is no beacon.
  void advertise(const std::string& adapter, const std::string& device, const Bytes& data,
                 std::int16_t rssi, std::uint16_t company = 0x004C);
  void removeDevice(const std::string& adapter, const std::string& device);
  bool isDiscovering(const std::string& adapter);

  ServiceDouble& service() { return service_; }

 private:
  struct Adapter {
    bool isFiltered = false;
    bool isDiscovering = false;
    std::map<std::string, Bytes> devices = {};
  };

  ServiceDouble::Answer answer(const ServiceDouble::Call& call);
  ServiceDouble::Answer setFilter(Adapter& adapter, const ServiceDouble::Call& call);
  ServiceDouble::Answer start(const std::string& path, Adapter& adapter);
  ServiceDouble::Answer objects();
  void setDiscovering(const std::string& path, bool isDiscovering);
  void tellRemoved(const std::string& path, const char* interface);

  std::map<std::string, Adapter> adapters_;
  bool holdsStarts_ = false;
  std::map<std::string, dbus::Failure> failures_;
  ServiceDouble service_;
};

}  // namespace ovinta::test
