#include "tests/support/BlueZDouble.h"

#include <utility>

namespace ovinta::test {
namespace {

using namespace platform::linux::dbus;

constexpr const char* kAdapter = "org.bluez.Adapter1";
constexpr const char* kDevice = "org.bluez.Device1";
constexpr const char* kObjectManager = "org.freedesktop.DBus.ObjectManager";
constexpr const char* kInterfaces = R"(<node>
  <interface name='org.freedesktop.DBus.ObjectManager'>
    <method name='GetManagedObjects'><arg type='a{oa{sa{sv}}}' direction='out'/></method>
  </interface>
  <interface name='org.bluez.Adapter1'>
    <method name='SetDiscoveryFilter'><arg type='a{sv}' direction='in'/></method>
    <method name='StartDiscovery'/><method name='StopDiscovery'/>
    <property name='Powered' type='b' access='readwrite'/>
    <property name='Discovering' type='b' access='read'/></interface></node>)";

using Interfaces = std::map<Glib::ustring, Properties>;

std::string pathOf(const std::string& adapter) { return "/org/bluez/" + adapter; }

Failure failure(const char* name, const char* text) {
  return {std::string("org.bluez.Error.") + name, text};
}

}  // namespace

BlueZDouble::BlueZDouble(const PrivateBus& bus)
    : service_(bus, "org.bluez", kInterfaces, [this](const auto& call) { return answer(call); }) {
  service_.addObject("/", kObjectManager);
}

void BlueZDouble::addAdapter(const std::string& name, bool isPowered) {
  service_.sync([&] {
    const std::string path = pathOf(name);
    const Properties properties{{"Powered", write(isPowered)}, {"Discovering", write(false)}};
    adapters_[path] = {};
    service_.addObject(path, kAdapter, properties);
    service_.emit("/", kObjectManager, "InterfacesAdded",
                  arguments(ObjectPath(path), Interfaces{{kAdapter, properties}}));
  });
}

void BlueZDouble::removeAdapter(const std::string& name) {
  service_.sync([&] {
    const std::string path = pathOf(name);
    const auto removed = [&](const std::string& object, const char* interface) {
      service_.emit("/", kObjectManager, "InterfacesRemoved",
                    arguments(ObjectPath(object), std::vector<Glib::ustring>{interface}));
    };
    for (const auto& [device, properties] : adapters_[path].devices) removed(device, kDevice);
    removed(path, kAdapter);
    service_.removeObject(path);
    adapters_.erase(path);
  });
}

void BlueZDouble::setPowered(const std::string& name, bool isPowered) {
  service_.sync([&] {
    if (!isPowered) endDiscovery(name);
    service_.change(pathOf(name), kAdapter, {{"Powered", write(isPowered)}});
  });
}

void BlueZDouble::endDiscovery(const std::string& name) {
  service_.sync([&] {
    adapters_[pathOf(name)].isFiltered = false;
    if (isDiscovering(name)) setDiscovering(pathOf(name), false);
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

void BlueZDouble::advertise(const std::string& adapter, const std::string& device,
                            const Bytes& data, std::int16_t rssi, std::uint16_t company) {
  const std::map<std::uint16_t, Glib::VariantBase> sent{{company, write(data)}};
  tell(adapter, device, {{"ManufacturerData", write(sent)}, {"RSSI", write(rssi)}});
}

void BlueZDouble::tell(const std::string& adapter, const std::string& device,
                       const Properties& properties) {
  service_.sync([&] {
    const std::string path = pathOf(adapter) + "/" + device;
    Adapter& hearing = adapters_[pathOf(adapter)];
    if (!hearing.isDiscovering || !hearing.isFiltered) return;
    const auto known = hearing.devices.find(path);
    if (known == hearing.devices.end()) {
      hearing.devices[path] = properties;
      service_.emit("/", kObjectManager, "InterfacesAdded",
                    arguments(ObjectPath(path), Interfaces{{kDevice, properties}}));
      return;
    }
    Properties changed = properties;
    std::erase_if(changed, [&](const auto& property) {
      const auto before = known->second.find(property.first);
      return property.first != "RSSI" && before != known->second.end() &&
             before->second.equal(property.second);
    });
    known->second = properties;
    service_.change(path, kDevice, changed);
  });
}

bool BlueZDouble::isDiscovering(const std::string& adapter) {
  bool result = false;
  service_.sync([&] { result = adapters_[pathOf(adapter)].isDiscovering; });
  return result;
}

void BlueZDouble::refuse(std::optional<Failure> failure) {
  service_.sync([&] { refusal_ = std::move(failure); });
}

void BlueZDouble::setDiscovering(const std::string& path, bool isDiscovering) {
  adapters_[path].isDiscovering = isDiscovering;
  service_.change(path, kAdapter, {{"Discovering", write(isDiscovering)}});
}

ServiceDouble::Answer BlueZDouble::answer(const ServiceDouble::Call& call) {
  if (call.method == "GetManagedObjects") return objects();
  Adapter& adapter = adapters_[call.object];
  if (call.method == "SetDiscoveryFilter") return setFilter(adapter, call);
  if (call.method == "StartDiscovery") return start(call.object, adapter);
  return stop(call.object, adapter);
}

ServiceDouble::Answer BlueZDouble::setFilter(Adapter& adapter, const ServiceDouble::Call& call) {
  const Properties filter = read<Properties>(call.arguments, 0).value_or(Properties());
  for (const auto& [key, value] : filter) {
    if (key != "Transport" && key != "DuplicateData") {
      return failure("InvalidArguments", "Invalid arguments in method call");
    }
  }
  adapter.isFiltered = read<Glib::ustring>(filter, "Transport") == Glib::ustring("le") &&
                       read<bool>(filter, "DuplicateData") == true;
  return Glib::VariantContainerBase();
}

ServiceDouble::Answer BlueZDouble::start(const std::string& path, Adapter& adapter) {
  if (refusal_) return *refusal_;
  if (!service_.property<bool>(path, kAdapter, "Powered").value_or(false)) {
    return failure("NotReady", "Resource Not Ready");
  }
  if (adapter.isDiscovering) return failure("InProgress", "Operation already in progress");
  setDiscovering(path, true);
  return Glib::VariantContainerBase();
}

ServiceDouble::Answer BlueZDouble::stop(const std::string& path, Adapter& adapter) {
  if (!adapter.isDiscovering) return failure("Failed", "No discovery started");
  setDiscovering(path, false);
  return Glib::VariantContainerBase();
}

ServiceDouble::Answer BlueZDouble::objects() {
  std::map<ObjectPath, Interfaces> all;
  for (const auto& [path, adapter] : adapters_) {
    // The rest of an adapter's properties is asked for when it is used.
    all[path] = {{kAdapter, {{"Name", write("test")}}}};
    for (const auto& [device, properties] : adapter.devices) all[device] = {{kDevice, properties}};
  }
  return arguments(all);
}

}  // namespace ovinta::test
