#include <algorithm>
#include <cmath>
#include <cstdio>
#include <regex>
#include <string_view>

#include "bench/Measurement.h"

namespace ovinta::bench {
namespace {

/// How the table is measured and judged.
struct Form {
  Effort effort;
  /// What a row may take, as a multiple of its aim.
  double tolerance;
  /// How often a row is measured until it holds.
  int tries;
  /// Whether rows are left out that say how long something takes on this machine.
  bool ratiosOnly;
};

constexpr Form kFull{{15, 0.05}, 1, 1, false};
/// For machines that are slow, shared or busy.
constexpr Form kShort{{5, 0.01}, 1.5, 3, true};

std::string print(const char* format, double value, const std::string& unit) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return unit.empty() ? text : text + (" " + unit);
}

std::string withThreeDigits(double value, const std::string& unit) {
  if (value == std::round(value) || value >= 100) return print("%.0f", value, unit);
  return print(value >= 10 ? "%.1f" : value >= 1 ? "%.2f" : "%.3f", value, unit);
}

std::string quantity(const Row& row, double value) {
  if (row.unit) return withThreeDigits(value, *row.unit);
  for (const char* unit : {"ns", "µs", "ms"}) {
    if (value < 1000) return withThreeDigits(value, unit);
    value /= 1000;
  }
  return withThreeDigits(value, "s");
}

/// The text with blanks before or after it; a byte that goes on a character takes no column.
std::string inColumn(std::string text, std::size_t width, bool right) {
  const auto columns = static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
  text.insert(right ? 0 : text.size(), columns < width ? width - columns : 0, ' ');
  return text;
}

void printRow(std::size_t pathWidth, const std::string& path, const std::string (&figures)[4],
              const char* verdict) {
  std::printf("%s", inColumn(path, pathWidth, false).c_str());
  for (const std::string& figure : figures) std::printf("%s", inColumn(figure, 16, true).c_str());
  std::printf("  %s\n", verdict);
  std::fflush(stdout);
}

/// Measures a row, prints its line, and says whether it holds.
bool judge(const Row& row, const Form& form, std::size_t pathWidth) {
  std::optional<Measurement> measurement;
  bool holds = false;
  for (int i = 0; i < form.tries && !holds; ++i) {
    measurement = measure(row, form.effort);
    holds = measurement && measurement->judged() <= row.aim * form.tolerance;
  }
  const std::string aim = row.hasFloor ? print("%.2f", row.aim, "") : quantity(row, row.aim);
  if (!measurement) {
    printRow(pathWidth, row.path, {"", "", "", aim}, "FAILED");
    return false;
  }
  printRow(pathWidth, row.path,
           {measurement->floor ? quantity(row, *measurement->floor) : "",
            quantity(row, measurement->ours),
            measurement->floor ? print("%.2f", measurement->judged(), "") : "", aim},
           measurement->judged() <= row.aim ? "met"
           : holds                          ? "near"
                                            : "MISSED");
  return holds;
}

int run(const Form& form, const std::regex& filter) {
  std::vector<Row> chosen;
  for (const Row& row : rows()) {
    const bool leftOut = form.ratiosOnly && !row.unit && !row.hasFloor;
    if (!leftOut && std::regex_search(row.path, filter)) chosen.push_back(row);
  }
  std::size_t pathWidth = 0;
  for (const Row& row : chosen) pathWidth = std::max(pathWidth, row.path.size());
  if (chosen.empty()) {
    std::fprintf(stderr, "No row's path matches.\n");
    return 2;
  }
  printRow(pathWidth, "path", {"floor", "ours", "ratio", "aim"}, "verdict");
  bool allHold = true;
  for (const Row& row : chosen) allHold = judge(row, form, pathWidth) && allHold;
  return allHold ? 0 : 1;
}

}  // namespace
}  // namespace ovinta::bench

/// ovinta_bench [--short] [FILTER]: prints the table of the rows whose path the regular expression
/// is found in, and ends with 1 when one misses its aim.
int main(int count, char** arguments) {
  using namespace ovinta::bench;
  bool isShort = false;
  std::string filter;
  for (int i = 1; i < count; ++i) {
    if (std::string_view(arguments[i]) == "--short") {
      isShort = true;
    } else {
      filter = arguments[i];
    }
  }
  try {
    return run(isShort ? kShort : kFull, std::regex(filter));
  } catch (const std::regex_error& error) {
    std::fprintf(stderr, "%s: %s\n", filter.c_str(), error.what());
    return 2;
  }
}
