#include "OvintaSDK/core/Dates.h"

namespace ovinta {

const platform::DateFormatter& Dates::pickupWindow() const {
  return pickupWindow_.get([this] {
    return formatters_()->makeDateFormatter({.pattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZ"});
  });
}

const platform::DateFormatter& Dates::service() const {
  return service_.get([this] {
    return formatters_()->makeDateFormatter({.pattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ",
                                             .calendar = "iso8601",
                                             .secondsFromGMT = 0,
                                             .locale = "en_US_POSIX"});
  });
}

}  // namespace ovinta
