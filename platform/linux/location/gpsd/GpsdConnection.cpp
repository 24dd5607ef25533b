#include "platform/linux/location/gpsd/GpsdConnection.h"

#include <glib-unix.h>
#include <gps.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {
namespace {

/// The accuracy of a receiver that gives no estimate: more than the error of any fix that deserves
/// the name.
constexpr double kUnestimatedAccuracyMetres = 100;

double accuracyOf(const gps_fix_t& fix) {
  const double accuracy = std::isfinite(fix.eph) ? fix.eph : std::hypot(fix.epx, fix.epy);
  if (!std::isfinite(accuracy)) return kUnestimatedAccuracyMetres;
  return std::max(accuracy, kBestAccuracyMetres);
}

std::optional<Location> readFix(const gps_data_t& data) {
  const gps_fix_t& fix = data.fix;
  const bool hasPosition = (data.set & LATLON_SET) != 0 && fix.mode >= MODE_2D &&
                           std::abs(fix.latitude) <= 90 && std::abs(fix.longitude) <= 180;
  if (!hasPosition) return std::nullopt;
  Location location{.coordinate = {fix.latitude, fix.longitude},
                    .horizontalAccuracy = accuracyOf(fix),
                    .speed = std::isfinite(fix.speed) ? fix.speed : -1};
  if ((data.set & TIME_SET) != 0) {
    location.timestamp = Date(std::chrono::seconds(fix.time.tv_sec) +
                              std::chrono::microseconds(fix.time.tv_nsec / 1000));
  }
  return location;
}

/// Whether gpsd has closed the connection, which libgps does not notice while it holds part of a
/// line.
bool hasHungUp(int socket) {
  char next = 0;
  return recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

}  // namespace

struct GpsdConnection::Session {
  ~Session() {
    if (!source) return;
    g_source_destroy(source);
    g_source_unref(source);
    gps_close(&data);
  }

  gps_data_t data{};
  /// The source that watches the connection; null while that is not open.
  GSource* source = nullptr;
};

GpsdConnection::GpsdConnection(Handlers handlers) : handlers_(std::move(handlers)) {}

GpsdConnection::~GpsdConnection() = default;

bool GpsdConnection::open(const std::string& host, const std::string& port) {
  session_ = std::make_unique<Session>();
  if (gps_open(host.c_str(), port.c_str(), &session_->data) != 0) return false;
  // libgps would end the process over a descriptor that `select` cannot take.
  if (session_->data.gps_fd >= FD_SETSIZE) {
    gps_close(&session_->data);
    return false;
  }
  session_->source = g_unix_fd_source_new(session_->data.gps_fd,
                                          static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR));
  g_source_set_callback(session_->source,
                        G_SOURCE_FUNC(+[](int, GIOCondition, gpointer self) -> gboolean {
                          static_cast<GpsdConnection*>(self)->readAll();
                          return G_SOURCE_CONTINUE;
                        }),
                        this, nullptr);
  g_source_attach(session_->source, g_main_context_get_thread_default());
  const bool isWatching = gps_stream(&session_->data, WATCH_ENABLE | WATCH_JSON, nullptr) == 0;
  if (!isWatching) close();
  return isWatching;
}

void GpsdConnection::close() { session_ = nullptr; }

void GpsdConnection::readAll() {
  // libgps keeps lines back of which the descriptor does not tell, so all of them are read.
  do {
    // The marks are cleared, so that what a line does not tell is not told a second time.
    session_->data.set = 0;
    const int count = gps_read(&session_->data, nullptr, 0);
    if (count < 0 || (count == 0 && hasHungUp(session_->data.gps_fd))) {
      close();
      return handlers_.onEnd();
    }
    // This was part of a line; the descriptor will tell of the rest.
    if (count == 0) return;
    if ((session_->data.set & VERSION_SET) != 0) {
      handlers_.onVersion(session_->data.version.release);
    }
    if (const auto location = readFix(session_->data)) handlers_.onLocation(*location);
  } while (gps_waiting(&session_->data, 0));
}

}  // namespace ovinta::platform::linuxos
