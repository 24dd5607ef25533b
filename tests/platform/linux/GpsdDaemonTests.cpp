// The real gpsd, with a receiver played by the test.
#include <unistd.h>

#include "platform/linux/location/gpsd/GpsdProvider.h"
#include "replay/LineServer.h"
#include "replay/NMEA.h"
#include "tests/platform/linux/PositionFixture.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using boost::asio::ip::tcp;

constexpr const char* kDaemon = "/usr/sbin/gpsd";
const tcp::endpoint kAnyPort(boost::asio::ip::address_v4::loopback(), 0);

/// gpsd takes no port 0. Somebody else may have the port by the time that it is used.
std::string freePort() {
  return std::to_string(replay::LineServer<tcp>(kAnyPort).endpoint().port());
}

class GpsdDaemonTest : public PositionTest {
 protected:
  void SetUp() override {
    if (access(kDaemon, X_OK) != 0) GTEST_SKIP() << "takes the package gpsd";
    const auto receiver = "tcp://127.0.0.1:" + std::to_string(receiver_.endpoint().port());
    // It listens itself before it asks the receiver.
    for (int attempt = 0; attempt < 5 && !receiver_.hasListener(); ++attempt) {
      port_ = freePort();
      daemon_.emplace(std::vector<std::string>{kDaemon, "-N", "-n", "-S", port_, receiver});
      receiver_.hasListener(5s);
    }
  }

  replay::LineServer<tcp> receiver_{kAnyPort};
  std::string port_;
  std::optional<replay::ChildProcess> daemon_;
};

TEST_F(GpsdDaemonTest, ItsFixesAreThoseOfTheReceiver) {
  GpsdProvider provider(time_.mainQueue(), std::make_shared<simulation::Sphere>(),
                        {.host = "127.0.0.1", .port = port_});
  const auto stream = open(provider, 0);
  waitForAccess(PositionAccess::grantedAlways);
  for (const double metres : {1000, 700}) {
    sendUntilTold(metres, [this](Coordinate place) {
      receiver_.say(replay::nmea(
          {place, 8, 10, std::chrono::floor<TimeInterval>(std::chrono::system_clock::now())}));
    });
  }
  expectOfNow();
}

}  // namespace
}  // namespace ovinta::platform::linuxos
