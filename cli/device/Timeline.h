#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/client/ObservedURLSession.h"
#include "cli/client/TerminalBlock.h"
#include "platform/Date.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// Where the customer is and how closely the library follows, at some moment.
struct Situation {
  /// Metres to the site; absent where that is not known.
  std::optional<double> distance = {};
  /// The accuracy setting in words, e.g. "best, 200 m".
  std::string accuracy = {};
};

/// Prints what happens, as it happens; when nobody reads it any more, the process gets a SIGPIPE.
/// May be used from any thread.
class Timeline {
 public:
  /// `now` is asked for the time of each line.
  Timeline(bool json, std::function<platform::Date()> now) : json_(json), now_(std::move(now)) {}

  /// What is printed with every line from now on.
  void setSituation(Situation situation);

  /// Prints one line: what kind of thing happened, what it was for people, and its details for
  /// programs.
  void add(std::string_view kind, std::string_view text, platform::Dictionary details = {});
  /// Prints the line of a request and its answer.
  void add(const Exchange& exchange);

  /// Prints a heading: what is to come next.
  void begin(std::string_view title);

  /// Lines that stay below the others from now on, on a terminal; nothing for programs.
  void showBelow(std::vector<std::string> lines);

  /// The closing summary: lines for people, or one object for programs.
  void summarize(std::string_view text, platform::Dictionary details);

 private:
  void print(std::string_view line);
  void flush();
  void printObject(std::string_view kind, std::string_view text, platform::Dictionary details);

  const bool json_;
  const std::function<platform::Date()> now_;
  /// Guards situation and block, and keeps lines whole.
  std::mutex mutex_;
  Situation situation_;
  TerminalBlock block_;
};

}  // namespace ovinta::cli
