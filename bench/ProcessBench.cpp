// What the library costs before it is used: the start of a process, threads and size.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

#include "bench/Row.h"
#include "sandbox/Sandbox.h"

namespace ovinta::bench {
namespace {

namespace fs = std::filesystem;

void startAndEnd(benchmark::State& state, const char* program) {
  const std::array<char*, 2> arguments{const_cast<char*>(program), nullptr};
  for (auto _ : state) {
    pid_t process = 0;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments.data(), environ) != 0) {
      return state.SkipWithError("could not start the process");
    }
    waitpid(process, nullptr, 0);
  }
}

void startWithCurl(benchmark::State& state) { startAndEnd(state, OVINTA_CURL_PROCESS); }
void startWithLibrary(benchmark::State& state) { startAndEnd(state, OVINTA_PROCESS_HELPER); }

/// What a command of the shell prints.
std::string outputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  std::array<char, 256> line;
  while (pipe && std::fgets(line.data(), line.size(), pipe)) output += line.data();
  if (pipe) pclose(pipe);
  return output;
}

/// The threads beside the main one after `makeServices`, `configure` and the first fetch.
const std::array<double, 3>& threads() {
  static const auto counted = [] {
    sandbox::Sandbox service;
    if (service.start()) std::exit(EXIT_FAILURE);
    std::string folder = (fs::temp_directory_path() / "ovinta-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) std::exit(EXIT_FAILURE);
    const std::string command =
        std::string(OVINTA_PROCESS_HELPER) + " " + service.baseURL() + " " + folder;
    outputOf(command);
    std::istringstream output(outputOf(command + " tell"));
    std::array<double, 3> counts{-1, -1, -1};
    for (double& count : counts) output >> count;
    std::error_code error;
    fs::remove_all(folder, error);
    return counts;
  }();
  return counted;
}

template <std::size_t kStep>
double threadsAt() {
  return threads().at(kStep);
}

/// The size of the library's file without what only debuggers and linkers of objects need.
double strippedSize() {
  const std::string copy = (fs::temp_directory_path() / "ovinta-bench-stripped").string();
  outputOf("strip -o " + copy + " " + OVINTA_LIBRARY);
  std::error_code error;
  const auto size = fs::file_size(copy, error);
  fs::remove(copy, error);
  return static_cast<double>(size);
}

double countLines(const std::string& command) { return std::stod(outputOf(command + " | wc -l")); }

double neededLibraries() {
  return countLines("readelf -d " + std::string(OVINTA_LIBRARY) + " | grep NEEDED");
}

double loadedWithCurl() { return countLines("ldd " + std::string(OVINTA_CURL_PROCESS)); }
double loadedWithLibrary() { return countLines("ldd " + std::string(OVINTA_PROCESS_HELPER)); }

const TimeRow kStart{"process/exec to main, library linked", &startWithCurl, &startWithLibrary,
                     12 / 9.5};
const FigureRow kAtFirst{"process/threads after makeServices", "threads", nullptr, &threadsAt<0>,
                         0};
const FigureRow kConfigured{"process/threads after configure", "threads", nullptr, &threadsAt<1>,
                            0};
const FigureRow kFetched{"process/threads after the first fetch", "threads", nullptr, &threadsAt<2>,
                         3};
const FigureRow kSize{"process/library stripped", "bytes", nullptr, &strippedSize, 1.2e6};
const FigureRow kNeeded{"process/libraries needed directly", "libraries", nullptr, &neededLibraries,
                        14};
const FigureRow kLoaded{"process/libraries loaded", "libraries", &loadedWithCurl,
                        &loadedWithLibrary, 1.6};

}  // namespace
}  // namespace ovinta::bench
