#include "cli/device/Timeline.h"

#include <array>
#include <chrono>
#include <cmath>
#include <ctime>
#include <iomanip>
#include <iostream>

#include "cli/client/HumanText.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

std::string describe(const Exchange& exchange) {
  std::string text = exchange.method + " " + exchange.path;
  if (!exchange.eventType.empty()) text += " " + exchange.eventType;
  if (!exchange.content.empty()) text += " (" + exchange.content + ")";
  return text + " -> " +
         (exchange.failure.empty() ? std::to_string(exchange.status) : exchange.failure);
}

}  // namespace

void Timeline::setSituation(Situation situation) {
  const std::scoped_lock lock(mutex_);
  situation_ = std::move(situation);
}

std::string Timeline::clockText(const char* format) const {
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(now_()).time_since_epoch().count();
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

void Timeline::begin(std::string_view title) {
  const std::scoped_lock lock(mutex_);
  if (json_) return printObject("step", title, {});
  std::cout << "\n" << title << std::endl;
}

void Timeline::add(std::string_view kind, std::string_view text, platform::Dictionary details) {
  const std::scoped_lock lock(mutex_);
  if (json_) return printObject(kind, text, std::move(details));
  const auto& [distance, accuracy] = situation_;
  const std::string metres = distance ? std::to_string(std::lround(*distance)) + " m" : "";
  std::cout << "  " << clockText("%H:%M:%S") << std::right << std::setw(9) << metres << "  "
            << std::left << std::setw(28) << accuracy << std::setw(10) << kind << visibleText(text)
            << std::endl;
}

void Timeline::add(const Exchange& exchange) {
  add("request", describe(exchange),
      {{"method", exchange.method},
       {"path", exchange.path},
       {"event", exchange.eventType},
       {"content", exchange.content},
       {"status", exchange.status}});
}

void Timeline::printObject(std::string_view kind, std::string_view text,
                           platform::Dictionary details) {
  details.emplace("time", clockText("%Y-%m-%dT%H:%M:%SZ"));
  details.emplace("kind", kind);
  details.emplace("text", text);
  if (situation_.distance) details.emplace("distance", std::lround(*situation_.distance));
  if (!situation_.accuracy.empty()) details.emplace("accuracy", situation_.accuracy);
  std::cout << platform::writeJSON(details) << std::endl;
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
