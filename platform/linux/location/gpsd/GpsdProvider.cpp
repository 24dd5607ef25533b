#include "platform/linux/location/gpsd/GpsdProvider.h"

#include <optional>
#include <utility>

#include "platform/linux/dbus/ContextThread.h"
#include "platform/linux/location/gpsd/GpsdConnection.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {
namespace {

class GpsdStream : public PositionStream {
 public:
  GpsdStream(std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Geodesy> geodesy,
             GpsdProvider::Options options, std::shared_ptr<bool> hasLogged, double distanceFilter,
             PositionHandlers handlers)
      : mainQueue_(std::move(mainQueue)),
        geodesy_(std::move(geodesy)),
        options_(std::move(options)),
        hasLogged_(std::move(hasLogged)),
        handlers_(std::move(handlers)),
        distanceFilter_(distanceFilter) {
    thread_.post([this] { connect(); });
  }

  void setDistanceFilter(double metres) override { distanceFilter_ = metres; }

 private:
  // Runs on the stream's thread.
  void connect();
  template <class Task>
  void onMainQueue(Task task);

  // Runs on the main thread.
  void note(const Location& location);
  void noteVersion(const std::string& version);
  void noteEnd();

  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<Geodesy> geodesy_;
  const GpsdProvider::Options options_;
  const std::shared_ptr<bool> hasLogged_;
  const PositionHandlers handlers_;
  double distanceFilter_;
  std::optional<Location> lastReported_;
  const portable::Lifetime lifetime_;
  /// The connection is used on the stream's thread alone.
  GpsdConnection connection_{
      {.onLocation =
           [this](const Location& location) { onMainQueue([this, location] { note(location); }); },
       .onVersion =
           [this](const std::string& version) {
             onMainQueue([this, version] { noteVersion(version); });
           },
       .onEnd = [this] { onMainQueue([this] { noteEnd(); }); }}};
  dbus::ContextThread thread_{"ovinta-gpsd", [this] { connection_.close(); }};
};

template <class Task>
void GpsdStream::onMainQueue(Task task) {
  mainQueue_->async(lifetime_.guard(std::move(task)));
}

void GpsdStream::connect() {
  if (!connection_.open(options_.host, options_.port)) {
    return onMainQueue([this] { noteEnd(); });
  }
  onMainQueue([this] {
    const auto handler = handlers_.onAccess;
    handler(PositionAccess::grantedAlways);
  });
}

void GpsdStream::note(const Location& location) {
  const auto saysLess = [&](const Location& last) {
    return geodesy_->distance(last.coordinate, location.coordinate) < distanceFilter_ &&
           location.horizontalAccuracy > last.horizontalAccuracy / 2;
  };
  if (lastReported_ && saysLess(*lastReported_)) return;
  lastReported_ = location;
  const auto handler = handlers_.onLocation;
  handler(location);
}

void GpsdStream::noteVersion(const std::string& version) {
  const auto handler = handlers_.onVersion;
  if (handler) handler(version);
}

void GpsdStream::noteEnd() {
  if (options_.log && !std::exchange(*hasLogged_, true)) {
    options_.log->write("No connection to gpsd at " + options_.host + ":" + options_.port);
  }
  mainQueue_->asyncAfter(options_.retryInterval,
                         lifetime_.guard([this] { thread_.post([this] { connect(); }); }));
  const auto handler = handlers_.onAccess;
  handler(PositionAccess::absent);
}

}  // namespace

GpsdProvider::GpsdProvider(std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Geodesy> geodesy,
                           Options options)
    : mainQueue_(std::move(mainQueue)),
      geodesy_(std::move(geodesy)),
      options_(std::move(options)) {}

void GpsdProvider::findService(std::function<void(bool)> handler) {
  mainQueue_->async([handler = std::move(handler)] { handler(true); });
}

std::unique_ptr<PositionStream> GpsdProvider::open(double distanceFilter,
                                                   PositionHandlers handlers) {
  return std::make_unique<GpsdStream>(mainQueue_, geodesy_, options_, hasLogged_, distanceFilter,
                                      std::move(handlers));
}

}  // namespace ovinta::platform::linuxos
