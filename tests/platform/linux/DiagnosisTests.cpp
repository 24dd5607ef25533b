#include "platform/linux/device/UPower.h"
#include "platform/linux/diagnosis/DiagnosisRun.h"
#include "platform/linux/location/geoclue/GeoClueProvider.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "platform/linux/location/gpsd/GpsdProvider.h"
#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"
#include "platform/linux/storage/SQLiteOutbox.h"
#include "replay/LineServer.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"
#include "tests/support/GeoClueDouble.h"
#include "tests/support/NotificationsDouble.h"

namespace ovinta::platform::linuxos {
namespace {

using test::ServiceDouble;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using Mood = test::GeoClueDouble::Mood;

/// A device in order.
struct DeviceDouble {
  explicit DeviceDouble(const replay::PrivateBus& bus)
      : geoclue(bus),
        bluez(bus),
        notifications(bus),
        upower(bus, kUPowerName),
        agent(bus, kAgentBusName) {
    setAccuracy(8);
    bluez.addAdapter("hci0");
    upower.addObject(kUPowerPath, kUPowerName, {{"DaemonVersion", dbus::write("0.99.20")}});
    setBattery(2, true);
  }

  void setAccuracy(std::uint32_t level) {
    geoclue.service().change(kGeoClueManagerPath, kGeoClueManager,
                             {{"AvailableAccuracyLevel", dbus::write(level)}});
  }
  void setBattery(std::uint32_t state, bool isPresent) {
    upower.addObject(kUPowerDisplayDevice, kUPowerDevice,
                     {{"State", dbus::write(state)}, {"IsPresent", dbus::write(isPresent)}});
  }

  test::GeoClueDouble geoclue;
  test::BlueZDouble bluez;
  test::NotificationsDouble notifications;
  ServiceDouble upower;
  ServiceDouble agent;
};

class DiagnosisTest : public test::BusTest {
 protected:
  DiagnosisTest() { test::writeFile(folder_.path() / "file", ""); }

  Surroundings around(PositionSource source, std::shared_ptr<PositionProvider> provider) {
    return {.mainQueue = time_.mainQueue(),
            .systemBus = bus_,
            .sessionBus = bus_,
            .applicationID = "tests",
            .positionSource = source,
            .positionProvider = std::move(provider),
            .dataDirectory = folder_.path() / "new" / "data",
            .powerSupplies = folder_.path(),
            .bluetoothClass = folder_.path()};
  }
  Surroundings aroundGeoClue() {
    return around(PositionSource::geoclue,
                  std::make_shared<GeoClueProvider>(
                      bus_, time_.mainQueue(), GeoClueProvider::Options{.desktopID = "tests"}));
  }

  void begin(Surroundings surroundings) {
    std::make_shared<DiagnosisRun>(std::move(surroundings), [this](const auto& findings) {
      for (const Finding& one : findings) {
        const std::string version = one.version.empty() ? "" : " " + one.version;
        const std::string line =
            "+~-?"[static_cast<int>(one.condition)] + one.subject + version + ": " + one.detail;
        lines_.push_back(line);
        if (one.condition != Condition::good) faults_.push_back(line);
        EXPECT_EQ(one.condition == Condition::good, one.advice.empty()) << line;
      }
    })->begin();
  }
  void waitForLines() {
    waitUntil([this] { return !lines_.empty(); });
  }

  std::vector<std::string> lines_;
  /// Those of the lines that are not good.
  std::vector<std::string> faults_;
};

TEST_F(DiagnosisTest, TheOrderEventsThatWaitAreCounted) {
  DeviceDouble device(daemon_);
  Surroundings around = aroundGeoClue();
  const std::filesystem::path data = folder_.path() / "used";
  around.dataDirectory = data;
  const OutboxEntry entry{.request = {.url = {"http://a"}, .method = "POST"}};
  auto outbox = std::make_unique<SQLiteOutbox>(data / kOutboxFile, nullptr);
  ASSERT_EQ(outbox->write({.added = {entry}}), std::nullopt);
  for (const char* expected : {", an app is using it and knows which order events wait",
                               ", order events that wait to be sent: 1"}) {
    lines_.clear();
    begin(around);
    waitForLines();
    EXPECT_THAT(lines_, testing::Contains("+data directory: " + data.string() + expected));
    outbox = nullptr;
  }
}

TEST_F(DiagnosisTest, ADeviceInOrderIsFoundSoAndLeftAsItWas) {
  DeviceDouble device(daemon_);
  begin(aroundGeoClue());
  waitForLines();
  const std::string data = (folder_.path() / "new" / "data").string();
  EXPECT_THAT(
      lines_,
      ElementsAre("+system bus: reached", "+session bus: reached", "+position: GeoClue",
                  "+position permission: granted", "+Bluetooth 5.66: BlueZ",
                  "+Bluetooth adapter hci0: on", "+notifications 1.9: double by the tests",
                  "+notification agent: can be started",
                  "+battery 0.99.20: UPower: running on battery", "+data directory: " + data));
  waitUntil([&] { return device.geoclue.clientCount() == 0; });
  EXPECT_EQ(device.bluez.service().calls(), std::vector<std::string>{"GetManagedObjects"});
  EXPECT_FALSE(exists(folder_.path() / "new"));
}

struct Fault {
  const char* name;
  void (*arrange)(DeviceDouble& device, Surroundings& around);
  std::vector<std::string> faults;
  /// Of a finding that is good.
  std::string also = "";
};

class DiagnosisFaultTest : public DiagnosisTest, public testing::WithParamInterface<Fault> {};

TEST_P(DiagnosisFaultTest, IsFound) {
  DeviceDouble device(daemon_);
  Surroundings surroundings = aroundGeoClue();
  GetParam().arrange(device, surroundings);
  begin(std::move(surroundings));
  waitForLines();
  EXPECT_EQ(faults_, GetParam().faults);
  EXPECT_THAT(lines_, Contains(HasSubstr(GetParam().also)));
}

const Fault kFaults[] = {
    {"NothingThere",
     [](DeviceDouble& device, Surroundings& around) {
       for (ServiceDouble* service :
            {&device.geoclue.service(), &device.bluez.service(), &device.upower, &device.agent}) {
         service->vanish();
       }
       device.notifications.vanish();
       around.bluetoothClass /= "none";
       around.dataDirectory.reset();
     },
     {"-position: GeoClue is not there",
      "-Bluetooth: BlueZ is not installed, and the kernel has no Bluetooth",
      "-notifications: nobody shows them",
      "~notification agent: not installed: notifications fire only while the app runs",
      "~data directory: none: nothing is kept when the app ends"},
     "+battery: the kernel: no battery"},
    {"NoSessionBus",
     [](DeviceDouble&, Surroundings& around) {
       around.sessionBus = std::make_shared<dbus::Bus>(
           "unix:path=/nowhere", around.mainQueue, std::make_shared<simulation::RecordingLog>());
     },
     {"-session bus: Could not connect: No such file or directory",
      "-notifications: its bus cannot be reached",
      "-notification agent: its bus cannot be reached"}},
    {"RefusedByConfiguration",
     [](DeviceDouble& device, Surroundings&) { device.geoclue.setMood(Mood::disallowing); },
     {"-position permission: refused"}},
    {"LocationSwitchedOff",
     [](DeviceDouble& device, Surroundings&) { device.geoclue.setMood(Mood::disabled); },
     {"-position permission: location is switched off for this user"}},
    {"NoExactSource",
     [](DeviceDouble& device, Surroundings&) { device.setAccuracy(6); },
     {"~position: GeoClue, without a source of exact positions"}},
    {"OneAdapterOfTwoOff",
     [](DeviceDouble& device, Surroundings&) { device.bluez.addAdapter("hci1", false); },
     {"~Bluetooth adapter hci1: off"}},
    {"AllAdaptersOff",
     [](DeviceDouble& device, Surroundings&) { device.bluez.setPowered("hci0", false); },
     {"-Bluetooth adapter hci0: off"}},
    {"NoAdapter",
     [](DeviceDouble& device, Surroundings&) { device.bluez.removeAdapter("hci0"); },
     {"-Bluetooth: no adapter"}},
    {"NoClicks",
     [](DeviceDouble& device, Surroundings&) { device.notifications.setCapabilities({}); },
     {"~notifications 1.9: double by the tests, which tells of no clicks"}},
    {"NoBattery",
     [](DeviceDouble& device, Surroundings&) { device.setBattery(0, false); },
     {},
     "UPower: no battery"},
    {"AFileForADirectory",
     [](DeviceDouble&, Surroundings& around) { around.dataDirectory = "/dev/null/data"; },
     {"-data directory: /dev/null/data cannot be written to"}},
    {"ADirectoryBelowNothing",
     [](DeviceDouble&, Surroundings& around) { around.dataDirectory = "data"; },
     {"-data directory: data is below a working directory that is gone"}},
    {"AFileThatIsNoDatabase",
     [](DeviceDouble&, Surroundings& around) {
       around.dataDirectory = around.powerSupplies;
       test::writeFile(around.powerSupplies / "A.sqlite", "");
       test::writeFile(around.powerSupplies / "B.sqlite", std::string(1000, 'x'));
     },
     {"-data directory: B.sqlite: file is not a database"}},
};

INSTANTIATE_TEST_SUITE_P(Faults, DiagnosisFaultTest, testing::ValuesIn(kFaults),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(DiagnosisTest, OnlyWhatIsDamagedIsGivenUp) {
  const auto adviceFor = [this](const char* name) {
    const auto problem = problemOfSQLiteFile(folder_.path() / name);
    return problem ? problem->advice : "none";
  };
  test::writeFile(folder_.path() / "damaged", std::string(1000, 'x'));
  openSQLiteFile(folder_.path() / "newer", {})->exec("PRAGMA user_version = 99");
  openSQLiteFile(folder_.path() / "sound", {});
  EXPECT_THAT(adviceFor("damaged"), HasSubstr("what it holds is lost"));
  EXPECT_EQ(adviceFor("newer"), "Use the app's newest version.");
  EXPECT_EQ(adviceFor("sound"), "none");
  EXPECT_EQ(adviceFor("absent"), "none");
}

TEST_F(DiagnosisTest, EndsInTimeWhenNobodyIsThereToAskTheUser) {
  DeviceDouble device(daemon_);
  device.geoclue.setMood(Mood::withoutAgent);
  begin(aroundGeoClue());
  waitUntil([&] { return device.geoclue.service().count("CreateClient") == 1; });
  EXPECT_THAT(lines_, ElementsAre());
  time_.advance(kDiagnosisLimit);
  EXPECT_THAT(lines_, AllOf(Contains("+position: GeoClue"),
                            Contains(HasSubstr("?position permission: not determined"))));
}

TEST_F(DiagnosisTest, GpsdTellsItsVersion) {
  using boost::asio::ip::tcp;
  replay::LineServer<tcp> gpsd({boost::asio::ip::address_v4::loopback(), 0});
  begin(around(PositionSource::gpsd,
               std::make_shared<GpsdProvider>(
                   time_.mainQueue(), std::make_shared<simulation::Sphere>(),
                   GpsdProvider::Options{.host = "127.0.0.1",
                                         .port = std::to_string(gpsd.endpoint().port())})));
  time_.runUntilIdle();
  ASSERT_TRUE(gpsd.hasListener(std::chrono::seconds(10)));
  gpsd.say("{\"class\":\"VERSION\",\"release\":\"3.22\",\"proto_major\":3,\"proto_minor\":14}\n");
  waitForLines();
  EXPECT_THAT(lines_, Contains("+position 3.22: gpsd"));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
