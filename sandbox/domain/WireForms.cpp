#include "sandbox/domain/WireForms.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <regex>
#include <vector>

#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/LocationAuthStatus.h"
#include "OvintaSDK/model/OrderState.h"
#include "platform/portable/FixedPatternDate.h"

namespace ovinta::sandbox {
namespace {

/// The row of the state that the text stands for; null when there is none.
template <class State>
const StateRow<State>* findRow(std::string_view text) {
  const auto& rows = StateTable<State>::kRows;
  const auto row = std::ranges::find(rows, text, &StateRow<State>::wireString);
  return row == rows.end() ? nullptr : &*row;
}

template <class State>
bool isOpenState(std::string_view text) {
  const auto* row = findRow<State>(text);
  return row && row->isOpen;
}

/// Whether the text is an instant with milliseconds, in UTC ("Z") or with a numeric offset.
bool isInstant(std::string_view text, bool inUTC) {
  static const std::regex kForm(
      R"((\d{4})-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)\.\d{3}(?:Z|[+-](\d\d)(\d\d)))");
  std::cmatch parts;
  if (text.ends_with('Z') != inUTC) return false;
  if (!std::regex_match(text.data(), text.data() + text.size(), parts, kForm)) return false;
  const auto part = [&](int index) { return parts[index].matched ? std::stoi(parts[index]) : 0; };
  const std::chrono::year_month_day day{std::chrono::year(part(1)),
                                        std::chrono::month(static_cast<unsigned>(part(2))),
                                        std::chrono::day(static_cast<unsigned>(part(3)))};
  return day.ok() && part(4) < 24 && part(5) < 60 && part(6) < 60 && part(7) < 24 && part(8) < 60;
}

std::vector<unsigned> versionNumbers(std::string_view version) {
  std::vector<unsigned> numbers;
  while (!version.empty()) {
    const std::string_view part = version.substr(0, version.find('.'));
    unsigned number = 0;
    const auto read = std::from_chars(part.data(), part.data() + part.size(), number);
    if (read.ec == std::errc::result_out_of_range) number = std::numeric_limits<unsigned>::max();
    numbers.push_back(number);
    version.remove_prefix(std::min(part.size() + 1, version.size()));
  }
  while (!numbers.empty() && numbers.back() == 0) numbers.pop_back();
  return numbers;
}

}  // namespace

std::string dateText(platform::Date date) {
  using namespace platform::portable;
  return writeFixedDate(date, std::chrono::seconds(0), OffsetStyle::extended).value();
}

std::string pushDateText(std::string_view answerText) {
  return std::string(answerText.substr(0, answerText.find('Z'))) + "+0000";
}

bool isPickupWindow(std::string_view text) {
  const auto slash = text.find('/');
  return slash != std::string_view::npos && isInstant(text.substr(0, slash), false) &&
         isInstant(text.substr(slash + 1), false);
}

bool isDateText(std::string_view text) { return isInstant(text, true); }

bool isOrderState(std::string_view text) { return findRow<OrderState>(text) != nullptr; }

bool isCustomerState(std::string_view text) { return findRow<CustomerState>(text) != nullptr; }

bool isLocationPermission(std::string_view text) {
  return findRow<LocationAuthStatus>(text) != nullptr;
}

bool isOpenOrderState(std::string_view text) { return isOpenState<OrderState>(text); }

bool isOpenCustomerState(std::string_view text) { return isOpenState<CustomerState>(text); }

std::optional<platform::Value> parsedNumber(std::string_view text) {
  const char* const end = text.data() + text.size();
  const auto isWhole = [&](std::from_chars_result result) {
    return result.ec == std::errc() && result.ptr == end;
  };
  std::int64_t integer = 0;
  if (isWhole(std::from_chars(text.data(), end, integer))) return integer;
  double real = 0;
  if (isWhole(std::from_chars(text.data(), end, real)) && std::isfinite(real)) return real;
  return std::nullopt;
}

std::string inLowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
  return lower;
}

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const unsigned char byte : text) {
    if (std::isalnum(byte) ||
        std::string_view("-._~").find(static_cast<char>(byte)) != std::string_view::npos) {
      encoded += static_cast<char>(byte);
    } else {
      encoded.append({'%', kDigits[byte / 16], kDigits[byte % 16]});
    }
  }
  return encoded;
}

std::string cutShort(std::string text, std::size_t longest) {
  std::size_t size = std::min(text.size(), longest);
  const auto isWithinCharacter = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  while (size > 0 && isWithinCharacter(size)) --size;
  text.resize(size);
  return text;
}

bool isVersion(std::string_view text) {
  static const std::regex kForm(R"(\d+(\.\d+)*)");
  return std::regex_match(text.begin(), text.end(), kForm);
}

bool isOlderVersion(std::string_view version, std::string_view than) {
  return versionNumbers(version) < versionNumbers(than);
}

}  // namespace ovinta::sandbox
