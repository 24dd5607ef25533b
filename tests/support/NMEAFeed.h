#pragma once

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

#include "platform/Location.h"
#include "tests/support/LineSender.h"

namespace ovinta::test {

/// A receiver of satellites in the north-western quarter of the world that speaks NMEA over a unix
/// socket.
class NMEAFeed : public LineSender<boost::asio::local::stream_protocol> {
 public:
  explicit NMEAFeed(const std::filesystem::path& socket) : LineSender(socket.string()) {
    // Services run as users of their own.
    permissions(socket, std::filesystem::perms(0666));
  }

  /// Tells of a good fix, made now.
  void send(platform::Coordinate coordinate) {
    const std::string place =
        angle("%09.4f,N,", coordinate.latitude) + angle("%010.4f,W", -coordinate.longitude);
    say(sentence("GPGGA," + now("%H%M%S.00,") + place + ",1,09,0.9,35.0,M,0.0,M,,") +
        sentence("GPRMC," + now("%H%M%S.00,A,") + place + ",19.4,0.0," + now("%d%m%y,,,A")));
  }

 private:
  static std::string now(const char* format) {
    const std::time_t time = std::time(nullptr);
    char text[32];
    return {text, std::strftime(text, sizeof text, format, std::gmtime(&time))};
  }

  /// Whole degrees, and minutes behind them.
  static std::string angle(const char* format, double degrees) {
    const int whole = static_cast<int>(degrees);
    char text[32];
    std::snprintf(text, sizeof text, format, whole * 100 + (degrees - whole) * 60);
    return text;
  }

  static std::string sentence(const std::string& body) {
    unsigned checksum = 0;
    for (const char character : body) checksum ^= static_cast<unsigned char>(character);
    char end[8];
    std::snprintf(end, sizeof end, "*%02X\r\n", checksum);
    return "$" + body + end;
  }
};

}  // namespace ovinta::test
