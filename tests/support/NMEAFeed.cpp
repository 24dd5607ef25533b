#include "tests/support/NMEAFeed.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>
#include <system_error>
#include <utility>

namespace ovinta::test {
namespace {

template <class... T>
std::string format(const char* pattern, T... values) {
  char text[128];
  const int size = std::snprintf(text, sizeof text, pattern, values...);
  return {text, static_cast<std::size_t>(size)};
}

/// Whole degrees and minutes, and on which side of zero they lie.
std::string angle(double degrees, int width, char positive, char negative) {
  const double size = std::abs(degrees);
  const double whole = std::floor(size);
  return format("%0*d%07.4f,%c", width, static_cast<int>(whole), (size - whole) * 60,
                degrees < 0 ? negative : positive);
}

std::string sentence(const std::string& body) {
  unsigned checksum = 0;
  for (const char character : body) checksum ^= static_cast<unsigned char>(character);
  return "$" + body + format("*%02X\r\n", checksum);
}

}  // namespace

NMEAFeed::NMEAFeed(const std::filesystem::path& socket)
    : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  socket.native().copy(address.sun_path, sizeof address.sun_path - 1);
  if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(socket_, 1) != 0) {
    throw std::system_error(errno, std::generic_category());
  }
  // Services run as users of their own.
  chmod(socket.c_str(), 0666);
}

NMEAFeed::~NMEAFeed() {
  close(connection_);
  close(socket_);
}

bool NMEAFeed::accept() {
  close(std::exchange(connection_, -1));
  pollfd waiting{socket_, POLLIN, 0};
  if (poll(&waiting, 1, 10'000) != 1) return false;
  connection_ = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
  return connection_ >= 0;
}

void NMEAFeed::send(platform::Coordinate coordinate) const {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  const std::string time = format("%02d%02d%02d.00", utc.tm_hour, utc.tm_min, utc.tm_sec);
  const std::string place =
      angle(coordinate.latitude, 2, 'N', 'S') + "," + angle(coordinate.longitude, 3, 'E', 'W');
  const std::string date = format("%02d%02d%02d", utc.tm_mday, utc.tm_mon + 1, utc.tm_year % 100);
  const std::string lines =
      sentence("GPGGA," + time + "," + place + ",1,09,0.9,35.0,M,0.0,M,,") +
      sentence("GPRMC," + time + ",A," + place + ",19.4,0.0," + date + ",,,A");
  if (::send(connection_, lines.data(), lines.size(), MSG_NOSIGNAL) < 0) {
    throw std::system_error(errno, std::generic_category());
  }
}

}  // namespace ovinta::test
