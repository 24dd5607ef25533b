#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/DateFormatter.h"

namespace ovinta::test {

/// A device that stands 5 hours west of Greenwich and is set to English: these take the place of
/// the settings that a format leaves to the device.
class ZonedDateFormatters : public platform::DateFormatterFactory {
 public:
  explicit ZonedDateFormatters(std::shared_ptr<platform::DateFormatterFactory> formatters)
      : formatters_(std::move(formatters)) {}

  std::unique_ptr<platform::DateFormatter> makeDateFormatter(
      const platform::DateFormat& format) override {
    formats.push_back(format);
    platform::DateFormat complete = format;
    complete.secondsFromGMT = format.secondsFromGMT.value_or(-5 * 3600);
    complete.locale = format.locale.value_or("en_US");
    return formatters_->makeDateFormatter(complete);
  }

  /// What was asked for.
  std::vector<platform::DateFormat> formats;

 private:
  std::shared_ptr<platform::DateFormatterFactory> formatters_;
};

}  // namespace ovinta::test
