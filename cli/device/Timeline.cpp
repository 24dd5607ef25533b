#include "cli/device/Timeline.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/client/HumanText.h"
#include "cli/device/ExchangeLog.h"

namespace ovinta::cli {

void Timeline::setSituation(Situation situation) {
  const std::lock_guard lock(mutex_);
  situation_ = std::move(situation);
}

void Timeline::begin(std::string_view title) {
  const std::lock_guard lock(mutex_);
  if (json_) return printObject("step", title, {});
  print("\n" + visibleText(title));
}

void Timeline::add(std::string_view kind, std::string_view text, platform::Dictionary details) {
  const std::lock_guard lock(mutex_);
  if (json_) return printObject(kind, text, std::move(details));
  const auto& [distance, accuracy] = situation_;
  const std::string metres = distance ? std::to_string(std::lround(*distance)) + " m" : "";
  std::ostringstream line;
  line << "  " << utcText(now_(), "%H:%M:%S");
  // The lines that stand below say more of distance and accuracy.
  if (!block_.isShown()) {
    line << std::right << std::setw(9) << metres;
    line << "  " << std::left << std::setw(26) << accuracy;
  }
  line << "  " << std::left << std::setw(10) << kind << visibleText(text);
  print(line.str());
}

void Timeline::print(std::string_view line) {
  block_.erase();
  std::cout << line << "\n";
  block_.draw();
  flush();
}

void Timeline::flush() {
  std::cout.flush();
  // The signal of a pipe that nobody reads goes to the thread that wrote, which is any; the one
  // that an `Interruption` is checked in would not see it.
  if (!std::cout && errno == EPIPE) kill(getpid(), SIGPIPE);
}

void Timeline::showBelow(std::vector<std::string> lines) {
  const std::lock_guard lock(mutex_);
  if (json_) return;
  block_.show(std::move(lines));
  flush();
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
  details.emplace("time", utcText(now_(), "%Y-%m-%dT%H:%M:%SZ"));
  details.emplace("kind", kind);
  details.emplace("text", text);
  if (situation_.distance) details.emplace("distance", std::lround(*situation_.distance));
  if (!situation_.accuracy.empty()) details.emplace("accuracy", situation_.accuracy);
  print(visibleJSON(details));
}

void Timeline::summarize(std::string_view text, platform::Dictionary details) {
  const std::lock_guard lock(mutex_);
  block_.show({});
  if (json_) {
    details.emplace("kind", "summary");
    std::cout << visibleJSON(details) << "\n";
  } else {
    std::cout << "\n" << visibleText(text, true);
  }
  flush();
}

}  // namespace ovinta::cli
