#include "tests/separable/SmallPlatform.h"

#include <algorithm>
#include <charconv>

#include "platform/DefaultServices.h"
#include "platform/portable/FixedPatternDate.h"
#include "platform/portable/GreatCircle.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"

namespace ovinta::test {
namespace {

using platform::Date;
namespace portable = platform::portable;
namespace simulation = platform::simulation;

struct ASCIIText : platform::Text {
  static bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
  static bool isLetter(char c) { return isUpper(c) || (c >= 'a' && c <= 'z'); }

  bool isUppercaseLetter(char32_t scalar) const override {
    return scalar < 128 && isUpper(static_cast<char>(scalar));
  }

  std::string capitalized(std::string_view text) const override {
    std::string result(text);
    bool isWithinWord = false;
    for (char& c : result) {
      if (isLetter(c) && isUpper(c) == isWithinWord) c ^= 0x20;
      isWithinWord = isLetter(c);
    }
    return result;
  }

  std::optional<double> decimal(std::string_view text) const override {
    double number = 0;
    const auto* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
  }
};

/// Dates of the fixed shape, in the zone of Greenwich.
struct FixedDates : platform::DateFormatter {
  explicit FixedDates(const std::string& pattern)
      : style(pattern.ends_with("ZZZZZ") ? portable::OffsetStyle::extended
                                         : portable::OffsetStyle::basic) {}

  std::string string(Date date) const override {
    return portable::writeFixedDate(date, std::chrono::seconds(0), style).value();
  }
  std::optional<Date> date(std::string_view text) const override {
    return portable::readFixedDate(text, style);
  }

  const portable::OffsetStyle style;
};

struct FixedDatesFactory : platform::DateFormatterFactory {
  std::unique_ptr<platform::DateFormatter> makeDateFormatter(
      const platform::DateFormat& format) override {
    return std::make_unique<FixedDates>(format.pattern);
  }
};

/// URLs of characters that need no encoding, given without a query.
struct PlainURLs : platform::URLFormat {
  std::optional<platform::URL> parse(std::string_view text) const override {
    if (text.empty()) return std::nullopt;
    return platform::URL{std::string(text)};
  }
  platform::URL withQueryItems(const platform::URL& url,
                               const std::vector<platform::URLQueryItem>& items) const override {
    std::string text = url.text;
    for (const auto& [name, value] : items) {
      text.append(&name == &items.front().name ? "?" : "&").append(name).append("=").append(value);
    }
    return {text};
  }
  platform::URL appendingPathComponent(const platform::URL& url,
                                       std::string_view component) const override {
    return {url.text + "/" + std::string(component)};
  }
};

struct Sphere : platform::Geodesy {
  double distance(platform::Coordinate from, platform::Coordinate to) const override {
    return portable::greatCircleDistance(from, to);
  }
};

platform::Services base(SmallPlatform& platform) {
  platform::Services services;
  services.log = std::make_shared<simulation::RecordingLog>();
  services.operationQueues = platform.queues;
  services.notificationCenter = portable::makeNotificationCenter();
  services.settings = portable::makeInMemorySettingsStore();
  services.mainBundle = std::make_shared<simulation::SimulatedBundle>();
  services.libraryBundle = portable::makeLibraryBundle();
  services.text = std::make_shared<ASCIIText>();
  services.dateFormatters = std::make_shared<FixedDatesFactory>();
  services.urls = std::make_shared<PlainURLs>();
  services.urlSession = platform.http;
  services.persistentContainers = portable::makeInMemoryPersistentContainerFactory();
  services.geodesy = std::make_shared<Sphere>();
  return services;
}

}  // namespace

SmallPlatform& SmallPlatform::ofProcess() {
  static auto* const platform = new SmallPlatform;
  return *platform;
}

SmallPlatform::SmallPlatform()
    : http(std::make_shared<simulation::AnsweringURLSession>(
          [](const auto&) { return simulation::Answer::json(200, ""); })),
      queues(std::make_shared<simulation::DrivenOperationQueueFactory>()),
      simulation(base(*this), Date{std::chrono::seconds{1614889800}}) {}

void SmallPlatform::drain() {
  do {
    simulation.time().runUntilIdle();
  } while (queues->runAll() + http->deliverAll() > 0);
}

void SmallPlatform::advance(std::chrono::seconds interval) {
  for (drain(); interval.count() > 0; --interval) {
    simulation.time().advance(std::chrono::seconds(1));
    drain();
  }
}

}  // namespace ovinta::test

ovinta::platform::Services ovinta::platform::makeDefaultServices() {
  return test::SmallPlatform::ofProcess().simulation.services();
}
