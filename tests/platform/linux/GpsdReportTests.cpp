#include "platform/linux/location/gpsd/GpsdReport.h"

#include <gmock/gmock.h>

#include <chrono>
#include <tuple>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;

constexpr Date kTime(1'700'000'000s);

/// A fix at 40.5, -73.
std::optional<Location> fix(double accuracy, Date time = kDistantPast, double speed = -1) {
  return Location{{40.5, -73}, accuracy, speed, time};
}

TEST(GpsdReportTest, TellsThePositionsThatItsLinesHold) {
  const std::string place = R"("lat":40.5,"lon":-73)";
  const std::tuple<std::string, std::optional<Location>> cases[] = {
      {R"({"class":"TPV","mode":2,)" + place + "}\r", fix(100)},
      {"{" + place + R"(,"mode":2.0,"class":"TPV"})", fix(100)},
      {R"({"class":"SKY","class":"TPV","mode":1,"mode":3,"speed":0,)" + place + "}",
       fix(100, kDistantPast, 0)},
      {R"({"class":"TPV","mode":3,"eph":30,"epx":1,"epy":1,)" + place + "}", fix(30)},
      {R"({"class":"TPV","mode":3,"eph":0,)" + place + "}", fix(5)},
      {R"({"class":"TPV","mode":3,"eph":"n/a","epx":30,"epy":40,)" + place + "}", fix(50)},
      {R"({"class":"TPV","mode":3,"epx":30,)" + place + "}", fix(100)},
      {R"({"class":"TPV","mode":3,"epy":30,"eph":1e999,)" + place + "}", fix(100)},
      {R"({"class":"TPV","mode":3,"lat":40.5})", {}},
      {R"({"class":"TPV","mode":3,"lat":90.5,"lon":-73})", {}},
      {R"({"class":"TPV","mode":3,"lat":"40.5","lon":-73})", {}},
      {R"({"class":"TPV","mode":1,)" + place + "}", {}},
      {R"({"class":"TPV","mode":"3",)" + place + "}", {}},
      {R"({"class":"TPV",)" + place + "}", {}},
      {R"({"class":"ATT","mode":3,)" + place + "}", {}},
      {R"({"mode":3,)" + place + "}", {}},
      {R"([{"class":"TPV","mode":3,)" + place + "}]", {}},
      {R"({"class":"TPV","mode":3,)" + place, {}},
      {"", {}}};
  for (const auto& [line, location] : cases) {
    const GpsdReport report = readGpsdLine(line);
    EXPECT_EQ(report.location, location) << line;
    EXPECT_EQ(report.version, std::nullopt) << line;
  }
}

TEST(GpsdReportTest, TellsTheTimeOfAFixWhereItIsOne) {
  const std::pair<const char*, Date> cases[] = {{R"("2023-11-14T22:13:20Z")", kTime},
                                                {R"("2023-11-14T22:13:20.5Z")", kTime + 500ms},
                                                {R"("2023-11-14T22:13:20.123999Z")", kTime + 123ms},
                                                {R"("2023-11-14T22:13:20.000000001Z")", kTime},
                                                {R"("2023-11-14T22:13:20,5Z")", kDistantPast},
                                                {R"("2023-11-14T22:13:20+01:00")", kDistantPast},
                                                {R"("2023-11-14T22:13:20")", kDistantPast},
                                                {R"("2023-11-14T23:59:60Z")", kDistantPast},
                                                {R"("0000-00-00T00:00:00Z")", kDistantPast},
                                                {R"("Z")", kDistantPast},
                                                {"1700000000", kDistantPast}};
  for (const auto& [time, expected] : cases) {
    const GpsdReport report = readGpsdLine(
        std::string(R"({"class":"TPV","mode":3,"lat":40.5,"lon":-73,"time":)") + time + "}");
    EXPECT_EQ(report.location, fix(100, expected)) << time;
  }
}

TEST(GpsdReportTest, TellsAVersionOnlyWhereThereIsOne) {
  EXPECT_EQ(readGpsdLine(R"({"class":"VERSION","release":"3.22"})").version, "3.22");
  for (const char* line : {R"({"class":"VERSION"})", R"({"class":"VERSION","release":3.22})",
                           R"({"class":"DEVICE","release":"3.22"})"}) {
    EXPECT_EQ(readGpsdLine(line).version, std::nullopt) << line;
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
