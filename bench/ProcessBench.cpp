// What the library costs before it is used: the start of a process, threads and size.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "bench/Row.h"
#include "replay/TemporaryDirectory.h"
#include "sandbox/Sandbox.h"

namespace ovinta::bench {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

void startAndEnd(benchmark::State& state, const char* program) {
  const std::array<char*, 2> arguments{const_cast<char*>(program), nullptr};
  for (auto _ : state) {
    pid_t process = 0;
    int status = 0;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments.data(), environ) != 0) {
      return state.SkipWithError("could not start the process");
    }
    if (waitpid(process, &status, 0) != process || status != 0) {
      return state.SkipWithError("the process failed");
    }
  }
}

void startWithDependencies(benchmark::State& state) {
  startAndEnd(state, OVINTA_DEPENDENCIES_PROCESS);
}
void startWithLibrary(benchmark::State& state) { startAndEnd(state, OVINTA_PROCESS_HELPER); }

/// What a command of the shell prints; absent when it fails.
std::optional<std::string> outputOf(const std::string& command) {
  FILE* const pipe = popen(command.c_str(), "r");
  if (!pipe) return {};
  std::string output;
  std::array<char, 256> line;
  while (std::fgets(line.data(), line.size(), pipe)) output += line.data();
  return pclose(pipe) == 0 ? std::optional(output) : std::nullopt;
}

/// The threads beside the main one after `makeServices`, `configure` and the first fetch.
std::optional<std::array<double, 3>> countThreads() {
  sandbox::Sandbox service;
  if (service.start()) return {};
  const replay::TemporaryDirectory folder;
  const std::string command =
      std::string(OVINTA_PROCESS_HELPER) + " " + service.baseURL() + " " + folder.path().string();
  // The first run makes the order that the second one fetches.
  const auto told = outputOf(command) ? outputOf(command + " tell") : std::nullopt;
  if (!told) return {};
  std::istringstream output(*told);
  std::array<double, 3> counts{};
  for (double& count : counts) output >> count;
  return output ? std::optional(counts) : std::nullopt;
}

template <std::size_t kStep>
std::optional<double> threadsAt() {
  static const auto counts = countThreads();
  return counts ? std::optional(counts->at(kStep)) : std::nullopt;
}

/// The libraries that the library's file names, which the system loads with it.
std::optional<double> neededLibraries() {
  std::istringstream entries(outputOf("readelf -d " OVINTA_LIBRARY).value_or(""));
  double count = 0;
  for (std::string entry; std::getline(entries, entry);)
    count += entry.find("(NEEDED)") != entry.npos ? 1 : 0;
  return count > 0 ? std::optional(count) : std::nullopt;
}

/// The size of the library's file without what only debuggers and linkers of objects need.
std::optional<double> strippedSize() {
  // Of an archive an application takes parts only.
  if (!std::string_view(OVINTA_LIBRARY).ends_with(".so")) return {};
  const replay::TemporaryDirectory folder;
  const std::string copy = folder.path() / "stripped";
  if (!outputOf("strip -o " + copy + " " OVINTA_LIBRARY)) return {};
  std::error_code error;
  const auto size = fs::file_size(copy, error);
  return error ? std::nullopt : std::optional(static_cast<double>(size));
}

const TimeRow kStart{"process/exec to main, library linked", &startWithLibrary, 12ms};
const TimeRow kShare{"process/exec to main, by its dependencies alone", &startWithDependencies,
                     &startWithLibrary, 1.2};
const FigureRow kAtFirst{"process/threads after makeServices", "threads", nullptr, &threadsAt<0>,
                         0};
const FigureRow kConfigured{"process/threads after configure", "threads", nullptr, &threadsAt<1>,
                            0};
const FigureRow kFetched{"process/threads after the first fetch", "threads", nullptr, &threadsAt<2>,
                         3};
const FigureRow kSize{"process/library stripped", "bytes", nullptr, &strippedSize, 1.2e6};
const FigureRow kNeeded{"process/libraries needed", "libraries", nullptr, &neededLibraries, 15};

}  // namespace
}  // namespace ovinta::bench
