#include "cli/demo/TunnelDemo.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "cli/client/HumanText.h"
#include "cli/client/Table.h"
#include "cli/demo/DemoOrder.h"
#include "cli/demo/TunnelRun.h"
#include "platform/JSON.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/trip/TripPath.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;
using platform::Dictionary;
using platform::List;
using platform::simulation::Trip;
using platform::simulation::TripTunnel;

/// The parking garage: it begins so many metres of the way before the site, and the customer stays
/// so long after the arrival.
constexpr double kGarageWay = 1000;
constexpr std::chrono::seconds kGarageStay = 90s;

/// The instant, to the second, at which no more than so many metres of the trip are left.
platform::TimeInterval timeBefore(const platform::simulation::TripPath& path, double metres) {
  const double length = path.at(path.duration()).distanceAlong;
  platform::TimeInterval offset{};
  while (offset < path.duration() && path.at(offset).distanceAlong < length - metres) offset += 1s;
  return offset;
}

Trip withTunnel(Trip trip) {
  if (!trip.tunnels.empty()) return trip;
  const auto services = platform::linuxos::makeValueServices();
  const platform::simulation::TripPath path(trip.points, *services.geodesy);
  trip.tunnels.push_back({timeBefore(path, kGarageWay), timeBefore(path, kArrived) + kGarageStay});
  return trip;
}

/// Has work done in a process of its own, beside this one.
class OwnProcess {
 public:
  /// What `work` throws of `std::exception` is its failure.
  explicit OwnProcess(const std::function<Dictionary()>& work) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe");
    std::cout.flush();
    pid_ = ::fork();
    if (pid_ < 0) fail("no process");
    if (pid_ == 0) work_(work, ends[1]);
    ::close(ends[1]);
    end_ = ends[0];
  }
  OwnProcess(const OwnProcess&) = delete;
  OwnProcess& operator=(const OwnProcess&) = delete;
  ~OwnProcess() {
    ::close(end_);
    ::waitpid(pid_, nullptr, 0);
  }

  /// Waits for the result; call it once. Throws the failure as `std::runtime_error`.
  Dictionary result() {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t count = 1; count > 0 || errno == EINTR;) {
      count = ::read(end_, piece.data(), piece.size());
      if (count == 0) break;
      if (count > 0) text.append(piece.data(), static_cast<std::size_t>(count));
    }
    const auto value = platform::parseJSON(text);
    const auto* fields = value ? value->as<Dictionary>() : nullptr;
    if (!fields) throw std::runtime_error("the trip was broken off");
    if (const auto* failure = platform::find<std::string>(*fields, "failure")) {
      throw std::runtime_error(*failure);
    }
    return *fields;
  }

 private:
  [[noreturn]] static void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
  }

  [[noreturn]] static void work_(const std::function<Dictionary()>& work, int end) {
    Dictionary result;
    try {
      result = work();
    } catch (const std::exception& failure) {
      result = {{"failure", failure.what()}};
    }
    const std::string text = platform::writeJSON(result);
    for (std::size_t sent = 0; sent < text.size();) {
      const ssize_t count = ::write(end, text.data() + sent, text.size() - sent);
      if (count < 0 && errno != EINTR) break;
      if (count > 0) sent += static_cast<std::size_t>(count);
    }
    ::_exit(0);
  }

  pid_t pid_ = -1;
  int end_ = -1;
};

const List& stepsOf(const Dictionary& result) { return *platform::find<List>(result, "steps"); }

/// The table's rows: each step when it was made, and when the service learned of it on either trip.
List compare(const Dictionary& without, const Dictionary& with) {
  List rows;
  for (std::size_t i = 0; i < stepsOf(without).size(); ++i) {
    Dictionary row = *stepsOf(without)[i].as<Dictionary>();
    const auto learned = row.extract("learned");
    row.emplace("without", learned ? learned.mapped() : platform::Value());
    const auto& other = *stepsOf(with)[i].as<Dictionary>();
    const auto* late = platform::find<std::string>(other, "learned");
    row.emplace("with", late ? platform::Value(*late) : platform::Value());
    rows.emplace_back(std::move(row));
  }
  return rows;
}

std::int64_t count(const Dictionary& result, std::string_view key) {
  return *platform::find<std::int64_t>(result, key);
}

std::int64_t missing(const List& rows, std::string_view key) {
  return std::ranges::count_if(rows, [&](const platform::Value& row) {
    return platform::find<std::string>(*row.as<Dictionary>(), key) == nullptr;
  });
}

/// The table as people read it, with a word where the service has never learned.
std::string textOf(List rows) {
  for (platform::Value& row : rows) {
    Dictionary fields = *row.as<Dictionary>();
    for (const char* key : {"without", "with"}) {
      if (!platform::find<std::string>(fields, key)) fields.insert_or_assign(key, "never");
    }
    row = std::move(fields);
  }
  return tableText({{"STEP", "step"},
                    {"MADE", "made"},
                    {"LEARNED WITHOUT DELIVERY", "without"},
                    {"WITH DELIVERY", "with"}},
                   rows);
}

}  // namespace

ExitCode runTunnelDemo(const DemoOptions& options, Trip trip) {
  trip = withTunnel(std::move(trip));
  const auto make = [&](bool isDelivered) {
    return [&options, &trip, isDelivered] { return TunnelRun(options, trip, isDelivered).run(); };
  };
  OwnProcess first(make(false));
  OwnProcess second(make(true));
  const Dictionary without = first.result();
  const Dictionary with = second.result();

  const List rows = compare(without, with);
  List tunnels;
  std::string text;
  for (const TripTunnel& tunnel : trip.tunnels) {
    const std::string from = utcText(trip.start + tunnel.from, "%H:%M:%S");
    const std::string to = utcText(trip.start + tunnel.to, "%H:%M:%S");
    tunnels.emplace_back(Dictionary{{"from", from}, {"to", to}});
    text += "No way to the service from " + from + " to " + to + ".\n";
  }
  const auto lost = std::to_string(missing(rows, "without"));
  text += "\n" + textOf(rows) + "\nWithout delivery the service never learned of " + lost + " of " +
          std::to_string(rows.size()) +
          " steps.\nWith delivery: " + *platform::find<std::string>(with, "account") +
          ".\nPositions that it learned: " + std::to_string(count(without, "positions")) +
          " without, " + std::to_string(count(with, "positions")) +
          " with.\nRequests that came again, because " +
          "their answer was lost, and were not done again: " +
          std::to_string(count(with, "repetitions")) + "\n";
  const bool isWhole = missing(rows, "with") == 0 && *platform::find<bool>(with, "isBalanced");
  Output(options.service.json)
      .print({Dictionary{{"tunnels", tunnels},
                         {"steps", rows},
                         {"without", without},
                         {"with", with},
                         {"succeeded", isWhole}},
              text});
  return isWhole ? ExitCode::success : ExitCode::failure;
}

}  // namespace ovinta::cli
