#include "platform/simulation/trip/XML.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "platform/portable/Trimmed.h"

namespace ovinta::platform::simulation::xml {
namespace {

/// Takes parts off the front of a text. It remembers whether one was missing, and then takes no
/// digits.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  int digits(std::size_t count) {
    int value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value * 10 + digit();
    return value;
  }
  /// Digits after a decimal point as microseconds; finer ones are cut off.
  TimeInterval fraction() {
    TimeInterval::rep value = 0;
    TimeInterval::rep unit = 100'000;
    do {
      value += digit() * unit;
      unit /= 10;
    } while (fine_ && !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9');
    return TimeInterval(value);
  }
  bool take(char character) {
    if (rest_.empty() || rest_.front() != character) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void expect(char character) { require(take(character)); }
  void require(bool holds) { fine_ = fine_ && holds; }
  bool isFine() const { return fine_ && rest_.empty(); }
  bool atEnd() const { return rest_.empty(); }

 private:
  int digit() {
    fine_ = fine_ && !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
    if (!fine_) return 0;
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool fine_ = true;
};

/// How far a zone ("Z", "+01:30", nothing) is ahead of UTC.
std::chrono::minutes zone(Scanner& scanner) {
  if (scanner.atEnd() || scanner.take('Z')) return {};
  const bool isWest = scanner.take('-');
  if (!isWest) scanner.expect('+');
  const auto hours = scanner.digits(2);
  scanner.expect(':');
  const auto minutes = scanner.digits(2);
  scanner.require(hours < 24 && minutes < 60);
  const auto ahead = std::chrono::hours(hours) + std::chrono::minutes(minutes);
  return isWest ? -ahead : ahead;
}

constexpr int kMostAttributes = 100;

std::string shortText(double value) {
  std::string text(32, '\0');
  text.resize(static_cast<std::size_t>(
      std::to_chars(text.data(), text.data() + text.size(), value).ptr - text.data()));
  return text;
}

}  // namespace

std::string_view localName(pugi::xml_node node) {
  const std::string_view name = node.name();
  const auto colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string_view namespaceName(pugi::xml_node node) {
  const std::string_view name = node.name();
  const auto colon = name.find(':');
  const std::string declaration =
      colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
  for (auto scope = node; scope; scope = scope.parent()) {
    int count = 0;
    for (const auto attribute : scope.attributes()) {
      if (declaration == attribute.name()) return attribute.value();
      if (++count > kMostAttributes) throw Malformed{"too many attributes", scope};
    }
  }
  return {};
}

std::vector<pugi::xml_node> children(pugi::xml_node parent, std::string_view name) {
  std::vector<pugi::xml_node> found;
  for (const auto node : parent.children()) {
    if (localName(node) == name) found.push_back(node);
  }
  return found;
}

pugi::xml_node child(pugi::xml_node parent, std::string_view name) {
  for (const auto node : parent.children()) {
    if (localName(node) == name) return node;
  }
  return {};
}

double number(std::string_view text, std::string_view name, Range range, pugi::xml_node place) {
  const auto digits = portable::trimmed(text);
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value)) {
    throw Malformed{std::string(name) + " is no number: \"" + std::string(digits) + "\"", place};
  }
  if (value < range.lowest || value > range.highest) {
    throw Malformed{std::string(name) + " is out of range: " + shortText(value), place};
  }
  return value;
}

double numberAttribute(pugi::xml_node node, const char* name, Range range,
                       std::optional<double> fallback) {
  const auto attribute = node.attribute(name);
  if (!attribute && fallback) return *fallback;
  if (!attribute) throw Malformed{std::string(name) + " is missing", node};
  return number(attribute.value(), name, range, node);
}

Date instant(std::string_view text, pugi::xml_node place) {
  Scanner scanner(portable::trimmed(text));
  const std::chrono::year year(scanner.digits(4));
  scanner.expect('-');
  const std::chrono::month month(static_cast<unsigned>(scanner.digits(2)));
  scanner.expect('-');
  const std::chrono::day day(static_cast<unsigned>(scanner.digits(2)));
  scanner.expect('T');
  const auto hours = scanner.digits(2);
  scanner.expect(':');
  const auto minutes = scanner.digits(2);
  scanner.expect(':');
  const auto seconds = scanner.digits(2);
  const auto fraction = scanner.take('.') ? scanner.fraction() : TimeInterval::zero();
  const auto ahead = zone(scanner);
  const std::chrono::year_month_day date(year, month, day);
  if (!scanner.isFine() || !date.ok() || hours > 23 || minutes > 59 || seconds > 59) {
    throw Malformed{"time is no ISO 8601 instant: \"" + std::string(portable::trimmed(text)) + "\"",
                    place};
  }
  return std::chrono::sys_days(date) + std::chrono::hours(hours) + std::chrono::minutes(minutes) +
         std::chrono::seconds(seconds) + fraction - ahead;
}

}  // namespace ovinta::platform::simulation::xml
