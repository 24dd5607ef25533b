#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/Value.h"

namespace ovinta::sandbox {

/// The instant, of the years 1600 to 9999, in UTC as answers carry it, e.g.
/// "2024-05-01T12:00:00.000Z"; finer parts are cut.
std::string dateText(platform::Date date);

/// Whether the text is an instant in that form.
bool isDateText(std::string_view text);

/// The same instant as push payloads carry it: with "+0000" in place of the final "Z".
std::string pushDateText(std::string_view answerText);

/// Whether the text is two instants such as "2024-05-01T12:00:00.000-0400", joined by one "/".
bool isPickupWindow(std::string_view text);

bool isOrderState(std::string_view text);
bool isCustomerState(std::string_view text);
bool isLocationPermission(std::string_view text);

/// Whether it is a state in which the order, or its customer, still takes part in a pickup.
bool isOpenOrderState(std::string_view text);
bool isOpenCustomerState(std::string_view text);

/// The integer or finite number that the whole text stands for; otherwise absent.
std::optional<platform::Value> parsedNumber(std::string_view text);

/// The text with its ASCII letters in lower case.
std::string inLowerCase(std::string_view text);

/// The text as a part of a URL's query: all but unreserved characters percent-encoded.
std::string percentEncoded(std::string_view text);

/// The text without what goes beyond that many bytes, and without the half of a character.
std::string cutShort(std::string text, std::size_t longest);

/// Whether the text is numbers joined by dots.
bool isVersion(std::string_view text);

/// Whether the first of two dotted version numbers precedes the second; parts that are no number
/// count as 0, and those too large as the largest.
bool isOlderVersion(std::string_view version, std::string_view than);

}  // namespace ovinta::sandbox
