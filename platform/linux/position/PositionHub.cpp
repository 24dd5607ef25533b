#include "platform/linux/position/PositionHub.h"

#include <array>
#include <utility>

namespace ovinta::platform::linux {
namespace {

/// With GeoClue's timing a quarter of an hour. Where there is nobody to ask the user, nobody need
/// ever come.
constexpr int kMostUnanswered = 20;

struct Reading {
  bool isEnabled;
  AuthorizationStatus status;
};

Reading read(PositionAccess access) {
  switch (access) {
    case PositionAccess::undecided:
      return {true, kAuthorizationNotDetermined};
    case PositionAccess::absent:
      return {false, kAuthorizationNotDetermined};
    case PositionAccess::off:
      return {false, 1};
    case PositionAccess::denied:
      return {true, 2};
    case PositionAccess::granted:
      return {true, 4};
    case PositionAccess::grantedAlways:
      return {true, 3};
  }
  return {false, kAuthorizationNotDetermined};
}

}  // namespace

PositionHub::PositionHub(std::shared_ptr<PositionProvider> provider,
                         std::shared_ptr<MainQueue> mainQueue)
    : provider_(std::move(provider)), mainQueue_(std::move(mainQueue)) {}

bool PositionHub::isEnabled() const { return read(access_).isEnabled; }

AuthorizationStatus PositionHub::status() const { return read(access_).status; }

void PositionHub::findService() {
  if (std::exchange(hasLooked_, true)) return;
  provider_->findService([this, life = std::weak_ptr(life_)](bool isThere) {
    if (life.expired() || hasBeenTold_) return;
    note(isThere ? PositionAccess::undecided : PositionAccess::absent);
  });
}

void PositionHub::askPermission() {
  // Nobody looks at these positions: the filter keeps them few.
  constexpr double kFilterMetres = 500;
  if (question_) return;
  unanswered_ = 0;
  question_ = open(kFilterMetres, [](const Location&) {});
}

std::unique_ptr<PositionStream> PositionHub::open(double distanceFilter,
                                                  std::function<void(const Location&)> onLocation) {
  const auto whileAlive = [life = std::weak_ptr(life_)](auto action) {
    return [life, action](const auto& argument) {
      if (!life.expired()) action(argument);
    };
  };
  return provider_->open(
      distanceFilter,
      {.onLocation = whileAlive([this, onLocation = std::move(onLocation)](const Location& found) {
         if (isAuthorized(status())) onLocation(found);
       }),
       .onAccess = whileAlive([this](PositionAccess access) { noteAnswer(access); })});
}

void PositionHub::noteAnswer(PositionAccess access) {
  hasBeenTold_ = true;
  if (access != PositionAccess::undecided || ++unanswered_ == kMostUnanswered) question_ = nullptr;
  note(access);
}

void PositionHub::onStatusChanged(std::weak_ptr<void> owner, std::function<void()> handler) {
  observers_.push_back({std::move(owner), std::move(handler)});
}

void PositionHub::note(PositionAccess access) {
  const AuthorizationStatus before = status();
  access_ = access;
  if (status() == before) return;
  std::erase_if(observers_, [](const Observer& observer) { return observer.owner.expired(); });
  // A copy: a handler may make and destroy managers.
  const auto observers = observers_;
  for (const Observer& observer : observers) {
    if (!observer.owner.expired()) observer.handler();
  }
}

}  // namespace ovinta::platform::linux
