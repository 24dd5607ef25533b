#include <algorithm>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/UUID.h"

namespace ovinta::platform {

namespace {

constexpr std::size_t kTextLength = 36;
constexpr std::size_t kDashes[] = {8, 13, 18, 23};

}  // namespace

std::optional<UUID> UUID::parse(std::string_view text) {
  // The length is looked at first, because the generator reads further forms: braced, without
  // dashes.
  if (text.size() != kTextLength) return std::nullopt;
  for (const std::size_t position : kDashes) {
    if (text[position] != '-') return std::nullopt;
  }
  try {
    const auto parsed = boost::uuids::string_generator()(text.begin(), text.end());
    UUID uuid;
    std::copy(parsed.begin(), parsed.end(), uuid.bytes.begin());
    return uuid;
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

std::string UUID::text() const {
  boost::uuids::uuid uuid;
  std::copy(bytes.begin(), bytes.end(), uuid.begin());
  std::string text = boost::uuids::to_string(uuid);
  for (char& c : text) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

}  // namespace ovinta::platform
