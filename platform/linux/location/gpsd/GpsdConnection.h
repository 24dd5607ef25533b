#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/location/gpsd/GpsdReport.h"

namespace ovinta::platform::linuxos {

/// One connection to gpsd. Lives on one thread and uses its default GLib context; handlers are
/// called there, and may not destroy the object.
class GpsdConnection {
 public:
  struct Handlers {
    std::function<void(const Location&)> onLocation;
    /// Told of gpsd's version, which its greeting holds.
    std::function<void(const std::string& version)> onVersion;
    /// Told when the connection has ended.
    std::function<void()> onEnd;
  };

  explicit GpsdConnection(Handlers handlers);
  ~GpsdConnection();
  GpsdConnection(const GpsdConnection&) = delete;
  GpsdConnection& operator=(const GpsdConnection&) = delete;

  /// Opens the connection; false, and `onEnd` is not called, when gpsd does not answer.
  bool open(const std::string& host, const std::string& port);
  void close();

 private:
  struct Session;

  void readSome();
  void tell(const GpsdReport& report);

  const Handlers handlers_;
  std::unique_ptr<Session> session_;
};

}  // namespace ovinta::platform::linuxos
