#include "tests/support/BlueZDouble.h"

namespace ovinta::test {
namespace {

using namespace platform::linuxos::dbus;
using Interfaces = std::map<std::string, Properties>;

constexpr const char* kAdapter = "org.bluez.Adapter1";
constexpr const char* kDevice = "org.bluez.Device1";
constexpr const char* kObjectManager = "org.freedesktop.DBus.ObjectManager";

std::string pathOf(const std::string& adapter) { return "/org/bluez/" + adapter; }

Failure failure(const char* name, const char* text) {
  return {std::string("org.bluez.Error.") + name, text};
}

Properties manufacturerData(const BlueZDouble::Bytes& data, std::uint16_t company) {
  return {{"ManufacturerData", write(std::map<std::uint16_t, Variant>{{company, write(data)}})}};
}

}  // namespace

BlueZDouble::BlueZDouble(const replay::PrivateBus& bus)
    : service_(bus, "org.bluez",
               {{"GetManagedObjects", ""},
                {"SetDiscoveryFilter", "a{sv}"},
                {"StartDiscovery", ""},
                {"StopDiscovery", ""}},
               [this](const auto& call) { return answer(call); }) {
  service_.addObject("/", kObjectManager);
}

void BlueZDouble::addAdapter(const std::string& name, bool isPowered) {
  service_.sync([&] {
    const Properties properties{{"Powered", write(isPowered)}, {"Discovering", write(false)}};
    adapters_[pathOf(name)] = {};
    service_.addObject(pathOf(name), kAdapter, properties);
    service_.emit("/", kObjectManager, "InterfacesAdded",
                  arguments(ObjectPath(pathOf(name)), Interfaces{{kAdapter, properties}}));
  });
}

void BlueZDouble::removeAdapter(const std::string& name) {
  service_.sync([&] {
    for (const auto& [device, data] : adapters_[pathOf(name)].devices) tellRemoved(device, kDevice);
    adapters_.erase(pathOf(name));
    service_.removeObject(pathOf(name));
    tellRemoved(pathOf(name), kAdapter);
  });
}

void BlueZDouble::tellRemoved(const std::string& path, const char* interface) {
  service_.emit("/", kObjectManager, "InterfacesRemoved",
                arguments(ObjectPath(path), std::vector<std::string>{interface}));
}

void BlueZDouble::setPowered(const std::string& name, bool isPowered) {
  if (!isPowered) endDiscovery(name);
  service_.change(pathOf(name), kAdapter, {{"Powered", write(isPowered)}});
}

void BlueZDouble::endDiscovery(const std::string& name) {
  service_.sync([&] {
    adapters_[pathOf(name)].isFiltered = false;
    setDiscovering(pathOf(name), false);
  });
}

void BlueZDouble::restart() {
  service_.vanish();
  service_.sync([&] {
    for (auto& [path, adapter] : adapters_) {
      adapter = {};
      setDiscovering(path, false);
    }
  });
  service_.appear();
}

void BlueZDouble::holdStarts() {
  service_.sync([&] { holdsStarts_ = true; });
}

void BlueZDouble::answerStarts() {
  service_.sync([&] { holdsStarts_ = false; });
  service_.answerLate();
}

void BlueZDouble::fail(const std::string& method, const Failure& failure) {
  service_.sync([&] { failures_[method] = failure; });
}

void BlueZDouble::advertise(const std::string& adapter, const std::string& device,
                            const Bytes& data, std::int16_t rssi, std::uint16_t company) {
  service_.sync([&] {
    Adapter& hearing = adapters_[pathOf(adapter)];
    if (!hearing.isDiscovering || !hearing.isFiltered) return;
    const std::string path = pathOf(adapter) + "/" + device;
    const bool isNew = !hearing.devices.contains(path);
    Properties news{{"RSSI", write(rssi)}};
    const bool isOther = isNew || hearing.devices[path] != data;
    if (isOther && !data.empty()) news.merge(manufacturerData(data, company));
    hearing.devices[path] = data;
    if (!isNew) return service_.change(path, kDevice, news);
    service_.emit("/", kObjectManager, "InterfacesAdded",
                  arguments(ObjectPath(path), Interfaces{{kDevice, news}}));
  });
}

void BlueZDouble::removeDevice(const std::string& adapter, const std::string& device) {
  service_.sync([&] {
    const std::string path = pathOf(adapter) + "/" + device;
    adapters_[pathOf(adapter)].devices.erase(path);
    tellRemoved(path, kDevice);
  });
}

bool BlueZDouble::isDiscovering(const std::string& adapter) {
  return service_.sync([&] { return adapters_[pathOf(adapter)].isDiscovering; });
}

void BlueZDouble::setDiscovering(const std::string& path, bool isDiscovering) {
  adapters_[path].isDiscovering = isDiscovering;
  service_.change(path, kAdapter, {{"Discovering", write(isDiscovering)}});
}

ServiceDouble::Answer BlueZDouble::answer(const ServiceDouble::Call& call) {
  if (const auto found = failures_.extract(call.method)) {
    // An answer that is late comes from a service that has done its work.
    if (found.mapped().name == kNoReply) answer(call);
    return found.mapped();
  }
  if (call.method == "GetManagedObjects") return objects();
  Adapter& adapter = adapters_[call.object];
  if (call.method == "SetDiscoveryFilter") return setFilter(adapter, call);
  if (call.method == "StartDiscovery" && holdsStarts_) return ServiceDouble::NoAnswer{};
  if (call.method == "StartDiscovery") return start(call.object, adapter);
  if (holdsStarts_) return failure("InProgress", "Operation already in progress");
  if (!adapter.isDiscovering) return failure("Failed", "No discovery started");
  setDiscovering(call.object, false);
  return Variant();
}

ServiceDouble::Answer BlueZDouble::setFilter(Adapter& adapter, const ServiceDouble::Call& call) {
  const Properties filter = read<Properties>(call.arguments, 0).value_or(Properties());
  adapter.isFiltered = filter.size() == 2 && read<bool>(filter, "DuplicateData") == true &&
                       read<std::string>(filter, "Transport").value_or("") == "le";
  if (adapter.isFiltered) return Variant();
  return failure("InvalidArguments", "Invalid arguments in method call");
}

ServiceDouble::Answer BlueZDouble::start(const std::string& path, Adapter& adapter) {
  if (!service_.property<bool>(path, kAdapter, "Powered").value_or(false)) {
    return failure("NotReady", "Resource Not Ready");
  }
  if (adapter.isDiscovering) return failure("InProgress", "Operation already in progress");
  setDiscovering(path, true);
  return Variant();
}

ServiceDouble::Answer BlueZDouble::objects() {
  std::map<ObjectPath, Interfaces> all;
  for (const auto& [path, adapter] : adapters_) {
    all[path] = {{kAdapter,
                  {{"Powered", write(service_.property<bool>(path, kAdapter, "Powered").value())},
                   {"Discovering", write(adapter.isDiscovering)},
                   {"Modalias", write("usb:v1D6Bp0246d0542")}}}};
    for (const auto& [device, data] : adapter.devices) {
      all[device] = {{kDevice, manufacturerData(data, 0x004C)}};
    }
  }
  return arguments(all);
}

}  // namespace ovinta::test
