#include "cli/demo/Timeline.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <iostream>

#include "platform/JSON.h"

namespace ovinta::cli {

void Timeline::setSituation(Situation situation) {
  const std::scoped_lock lock(mutex_);
  situation_ = std::move(situation);
}

std::string Timeline::clockText(std::string_view format) const {
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(now_()).time_since_epoch().count();
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  const std::size_t length =
      std::strftime(text.data(), text.size(), std::string(format).c_str(), &parts);
  return {text.data(), length};
}

void Timeline::add(std::string_view kind, std::string_view text, platform::Dictionary details) {
  const std::scoped_lock lock(mutex_);
  const auto metres = situation_.distance ? std::lround(*situation_.distance) : -1;
  if (json_) {
    details.emplace("time", clockText("%Y-%m-%dT%H:%M:%SZ"));
    details.emplace("kind", kind);
    details.emplace("text", text);
    if (metres >= 0) details.emplace("distance", metres);
    if (!situation_.accuracy.empty()) details.emplace("accuracy", situation_.accuracy);
    std::cout << platform::writeJSON(details) << std::endl;
    return;
  }
  const std::string distance = metres >= 0 ? std::to_string(metres) + " m" : "";
  std::printf("%s  %8s  %-28s  %-8.*s  %.*s\n", clockText("%H:%M:%S").c_str(), distance.c_str(),
              situation_.accuracy.c_str(), static_cast<int>(kind.size()), kind.data(),
              static_cast<int>(text.size()), text.data());
  std::fflush(stdout);
}

void Timeline::summarize(std::string_view text, platform::Dictionary details) {
  const std::scoped_lock lock(mutex_);
  if (json_) {
    details.emplace("kind", "summary");
    std::cout << platform::writeJSON(details) << std::endl;
  } else {
    std::cout << "\n" << text << std::flush;
  }
}

}  // namespace ovinta::cli
