#include "bench/Row.h"

namespace ovinta::bench {

namespace {

std::vector<Row>& registeredRows() {
  static std::vector<Row> rows;
  return rows;
}

void registerBenchmark(const std::string& name, Function function, Clock clock) {
  auto* benchmark = benchmark::RegisterBenchmark(name.c_str(), function);
  if (clock == Clock::wall) benchmark->UseRealTime();
}

}  // namespace

TimeRow::TimeRow(const char* path, Function floor, Function ours, double aim, Clock clock) {
  const std::string name = path;
  registerBenchmark(name + "/floor", floor, clock);
  registerBenchmark(name + "/ours", ours, clock);
  registeredRows().push_back(
      {.path = name, .unit = {}, .hasFloor = true, .clock = clock, .aim = aim});
}

TimeRow::TimeRow(const char* path, Function ours, std::chrono::nanoseconds limit, Clock clock) {
  const std::string name = path;
  registerBenchmark(name + "/ours", ours, clock);
  registeredRows().push_back({.path = name,
                              .unit = {},
                              .hasFloor = false,
                              .clock = clock,
                              .aim = static_cast<double>(limit.count())});
}

FigureRow::FigureRow(const char* path, const char* unit, Figure floor, Figure ours, double aim) {
  registeredRows().push_back({.path = path,
                              .unit = unit,
                              .hasFloor = floor != nullptr,
                              .floorFigure = floor,
                              .figure = ours,
                              .aim = aim});
}

const std::vector<Row>& rows() { return registeredRows(); }

}  // namespace ovinta::bench
