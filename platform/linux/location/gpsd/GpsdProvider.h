#pragma once

#include <memory>
#include <string>

#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// Positions from gpsd, which lets everybody in. Each stream is a connection of its own, on a
/// thread of its own. A fix with half the uncertainty of the last one passes the distance filter
/// wherever it lies.
class GpsdProvider : public PositionProvider {
 public:
  struct Options {
    std::string host = "localhost";
    std::string port = "2947";
    /// The time from a connection that ended, or could not be made, to the next attempt.
    TimeInterval retryInterval = std::chrono::seconds(15);
    /// Told once of a connection that ended or could not be made; null for nobody.
    std::shared_ptr<Log> log = nullptr;
  };

  GpsdProvider(std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Geodesy> geodesy,
               Options options);

  /// Tells that the service is there: whether it is shows only when a stream begins, and until then
  /// it is believed.
  void findService(std::function<void(bool)> handler) override;
  std::unique_ptr<PositionStream> open(double distanceFilter, PositionHandlers handlers) override;

 private:
  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<Geodesy> geodesy_;
  const Options options_;
  /// Whether the log was told of a failure, which all streams of the provider share.
  const std::shared_ptr<bool> hasLogged_ = std::make_shared<bool>(false);
};

}  // namespace ovinta::platform::linuxos
