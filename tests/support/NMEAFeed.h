#pragma once

#include <filesystem>

#include "platform/Location.h"

namespace ovinta::test {

/// A receiver of satellites that speaks NMEA over a unix socket, to one listener at a time.
class NMEAFeed {
 public:
  explicit NMEAFeed(const std::filesystem::path& socket);
  ~NMEAFeed();
  NMEAFeed(const NMEAFeed&) = delete;
  NMEAFeed& operator=(const NMEAFeed&) = delete;

  /// Waits for the next listener; false when none comes within ten seconds.
  bool accept();

  /// Tells of a good fix, made now.
  void send(platform::Coordinate coordinate) const;

 private:
  const int socket_;
  int connection_ = -1;
};

}  // namespace ovinta::test
