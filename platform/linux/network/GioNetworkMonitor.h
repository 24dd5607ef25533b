#pragma once

#include <gio/gio.h>

#include <memory>

#include "platform/MainQueue.h"
#include "platform/NetworkMonitor.h"
#include "platform/linux/dbus/ContextThread.h"

namespace ovinta::platform::linuxos {

/// What GIO knows of the network: from NetworkManager, from the network portal inside a sandbox, or
/// else from the kernel. A monitor of its own, on a thread of its own that starts with `start`: the
/// one that GIO shares tells its changes in the context of whoever asked first, which may be the
/// application's.
class GioNetworkMonitor final : public NetworkMonitor {
 public:
  explicit GioNetworkMonitor(std::shared_ptr<MainQueue> mainQueue);

  void start(Handler handler) override;

 private:
  /// What the thread needs to tell something.
  struct Told {
    std::shared_ptr<MainQueue> mainQueue;
    Handler handler;
  };

  void begin(const std::shared_ptr<Told>& told);
  void end();
  static void tell(const std::shared_ptr<Told>& told, GNetworkMonitor* monitor);
  static void changed(GNetworkMonitor* monitor, gboolean isAvailable, gpointer told);

  const std::shared_ptr<MainQueue> mainQueue_;
  /// Belongs to the thread.
  GNetworkMonitor* monitor_ = nullptr;
  dbus::ContextThread thread_;
};

}  // namespace ovinta::platform::linuxos
