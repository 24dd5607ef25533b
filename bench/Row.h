#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ovinta::bench {

/// What Google Benchmark measures: a function that repeats its work while the state says so. It is
/// called several times, so that what takes long to prepare belongs into a static variable.
using Function = void (*)(benchmark::State&);

/// What finds out a figure; absent when it could not, which fails the row.
using Figure = std::optional<double> (*)();

/// Whose time is measured: the clock's on the wall, or the processor's for the thread that calls
/// the function. The latter is right for work that waits for nothing, and much the same on a busy
/// machine.
enum class Clock { wall, processor };

/// Two benchmarks that do the same work; `aim` is the most that ours may take, as a multiple of the
/// floor. They are registered as `<path>/floor` and `<path>/ours`, and measured in turns. What is
/// compared is the time of an iteration or, where the function sets how many items it has
/// processed, of an item.
struct TimeRow {
  TimeRow(const char* path, Function floor, Function ours, double aim, Clock clock = Clock::wall);
  /// Work without a floor, which may take `limit` at most. The short form leaves it out.
  TimeRow(const char* path, Function ours, std::chrono::nanoseconds limit,
          Clock clock = Clock::wall);
};

/// A figure that is no time (bytes, allocations, threads, connections), measured once each. Without
/// a floor (null), `aim` is the most that the figure itself may be.
struct FigureRow {
  FigureRow(const char* path, const char* unit, Figure floor, Figure ours, double aim);
};

/// A row as the table holds it.
struct Row {
  std::string path;
  /// The unit of the figure; of a row of times there is none, since they are all in nanoseconds.
  std::optional<std::string> unit;
  /// Whether `aim` is a multiple of the floor.
  bool hasFloor;
  Clock clock = Clock::wall;
  Figure floorFigure = nullptr;
  Figure figure = nullptr;
  double aim;
};

/// All rows, in the order of their registration.
const std::vector<Row>& rows();

}  // namespace ovinta::bench
