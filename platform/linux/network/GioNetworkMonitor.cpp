#include "platform/linux/network/GioNetworkMonitor.h"

#include <utility>

namespace ovinta::platform::linuxos {
namespace {

/// The first of GIO's monitors, the best of them first, that works here; null when none does.
GNetworkMonitor* makeMonitor() {
  // GIO registers its monitors together with its proxy resolvers, when one of these is asked for.
  (void)g_proxy_resolver_get_default();
  auto* const point = g_io_extension_point_lookup(G_NETWORK_MONITOR_EXTENSION_POINT_NAME);
  if (!point) return nullptr;
  for (GList* each = g_io_extension_point_get_extensions(point); each; each = each->next) {
    const GType type = g_io_extension_get_type(static_cast<GIOExtension*>(each->data));
    auto* const object = g_initable_new(type, nullptr, nullptr, nullptr);
    if (object) return G_NETWORK_MONITOR(object);
  }
  return nullptr;
}

/// GIO's monitor of NetworkManager uses the connection to the system's bus that the process shares,
/// which ends the process when that bus goes away unless it is told not to.
void keepProcessWithoutBus() {
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
  if (!bus) return;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  g_object_unref(bus);
}

}  // namespace

GioNetworkMonitor::GioNetworkMonitor(std::shared_ptr<MainQueue> mainQueue)
    : mainQueue_(std::move(mainQueue)), thread_("ovinta-network", [this] { end(); }) {}

void GioNetworkMonitor::start(Handler handler) {
  auto told = std::make_shared<Told>(Told{mainQueue_, std::move(handler)});
  thread_.post([this, told = std::move(told)] { begin(told); });
}

void GioNetworkMonitor::begin(const std::shared_ptr<Told>& told) {
  keepProcessWithoutBus();
  monitor_ = makeMonitor();
  if (!monitor_) return;
  g_signal_connect_data(
      monitor_, "network-changed", G_CALLBACK(&changed), new std::shared_ptr<Told>(told),
      [](gpointer data, GClosure*) { delete static_cast<std::shared_ptr<Told>*>(data); },
      GConnectFlags(0));
  tell(told, monitor_);
}

void GioNetworkMonitor::end() { g_clear_object(&monitor_); }

// Told at every change of the networks, also where there is one before and after: from a wireless
// one that leads nowhere to a mobile one, say.
void GioNetworkMonitor::changed(GNetworkMonitor* monitor, gboolean, gpointer told) {
  tell(*static_cast<std::shared_ptr<Told>*>(told), monitor);
}

void GioNetworkMonitor::tell(const std::shared_ptr<Told>& told, GNetworkMonitor* monitor) {
  // A network behind a portal leads nowhere until somebody has signed in there.
  const bool isAvailable =
      g_network_monitor_get_network_available(monitor) != FALSE &&
      g_network_monitor_get_connectivity(monitor) != G_NETWORK_CONNECTIVITY_PORTAL;
  // The signal's handler goes with the monitor, and with it all that is left to be told.
  told->mainQueue->async([weak = std::weak_ptr(told), isAvailable] {
    if (const auto living = weak.lock()) living->handler(isAvailable);
  });
}

}  // namespace ovinta::platform::linuxos
