#include "platform/linux/location/KeptAccess.h"

#include <string>
#include <string_view>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

constexpr std::string_view kKey = "Location Access";

constexpr std::pair<PositionAccess, std::string_view> kAnswers[] = {
    {PositionAccess::off, "off"},
    {PositionAccess::denied, "denied"},
    {PositionAccess::granted, "granted"},
    {PositionAccess::grantedAlways, "granted always"}};

std::string textOf(PositionSource source, std::string_view answer) {
  const auto name = kPositionSourceNames.at(static_cast<std::size_t>(source));
  return std::string(name) + ": " + std::string(answer);
}

}  // namespace

KeptAccess::KeptAccess(std::shared_ptr<SettingsStore> settings, PositionSource source)
    : settings_(std::move(settings)), source_(source) {}

std::optional<PositionAccess> KeptAccess::load() const {
  const auto kept = settings_->string(kKey);
  for (const auto& [access, answer] : kAnswers) {
    if (kept == textOf(source_, answer)) return access;
  }
  return std::nullopt;
}

void KeptAccess::store(PositionAccess access) const {
  for (const auto& [known, answer] : kAnswers) {
    if (known == access) return settings_->set(kKey, textOf(source_, answer));
  }
  settings_->remove(kKey);
}

}  // namespace ovinta::platform::linuxos
