#include "bench/Measurement.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ovinta::bench {

namespace {

/// Keeps the times of each benchmark instead of printing them.
class TimeKeeper : public benchmark::BenchmarkReporter {
 public:
  explicit TimeKeeper(Clock clock) : clock_(clock) {}

  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      if (run.error_occurred) {
        GetErrorStream() << run.benchmark_name() << ": " << run.error_message << "\n";
        failed_ = true;
        continue;
      }
      const auto items = run.counters.find("items_per_second");
      times_[run.run_name.function_name].push_back(
          items == run.counters.end()
              ? (clock_ == Clock::wall ? run.real_accumulated_time : run.cpu_accumulated_time) /
                    static_cast<double>(run.iterations) * 1e9
              : 1e9 / items->second);
    }
  }

  std::optional<double> median(const std::string& name) {
    auto& times = times_[name];
    if (failed_ || times.empty()) return {};
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }

 private:
  const Clock clock_;
  bool failed_ = false;
  std::map<std::string, std::vector<double>> times_;
};

/// An expression that this text alone matches.
std::string literally(const std::string& text) {
  std::string expression;
  for (const char character : text) {
    if (std::string_view("\\^$.|?*+()[]{}").find(character) != std::string_view::npos) {
      expression += '\\';
    }
    expression += character;
  }
  return expression;
}

std::optional<Measurement> together(const Row& row, std::optional<double> floor,
                                    std::optional<double> ours) {
  if (!ours || (row.hasFloor && !floor)) return {};
  return Measurement{floor, *ours};
}

}  // namespace

std::optional<Measurement> measure(const Row& row, const Effort& effort) {
  if (row.unit) {
    const auto floor = row.hasFloor ? row.floorFigure() : std::nullopt;
    return together(row, floor, row.figure());
  }
  // The library takes how long to measure as options of the command line only.
  std::string options[]{"", "--benchmark_enable_random_interleaving=true",
                        "--benchmark_repetitions=" + std::to_string(effort.repetitions),
                        "--benchmark_min_time=" + std::to_string(effort.seconds)};
  char* arguments[]{options[0].data(), options[1].data(), options[2].data(), options[3].data()};
  int count = std::size(arguments);
  benchmark::Initialize(&count, arguments);

  TimeKeeper keeper(row.clock);
  benchmark::RunSpecifiedBenchmarks(&keeper, "^" + literally(row.path) + "/(floor|ours)");
  return together(row, keeper.median(row.path + "/floor"), keeper.median(row.path + "/ours"));
}

}  // namespace ovinta::bench
