#include "platform/linux/position/PositionHub.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linux {
namespace {

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

/// A provider's stream whose answer counts while it is open.
class PositionHub::Stream : public PositionStream {
 public:
  Stream(std::unique_ptr<PositionStream> stream, std::shared_ptr<Answer> answer,
         std::function<void()> onClosed)
      : stream_(std::move(stream)), answer_(std::move(answer)), onClosed_(std::move(onClosed)) {}
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() override {
    answer_ = nullptr;
    onClosed_();
  }

  void setDistanceFilter(double metres) override { stream_->setDistanceFilter(metres); }

 private:
  const std::unique_ptr<PositionStream> stream_;
  std::shared_ptr<Answer> answer_;
  const std::function<void()> onClosed_;
};

PositionHub::PositionHub(std::shared_ptr<PositionProvider> provider,
                         std::shared_ptr<MainQueue> mainQueue)
    : provider_(std::move(provider)), mainQueue_(std::move(mainQueue)) {}

bool PositionHub::isEnabled() const { return read(access_).isEnabled; }

AuthorizationStatus PositionHub::status() const { return read(access_).status; }

void PositionHub::findService() {
  if (std::exchange(hasLooked_, true)) return;
  watchArrivals();
  provider_->findService(life_.guard([this](bool isThere) {
    if (!isThere) return;
    if (!isAsking_) arrivals_ = nullptr;
    if (access_ == PositionAccess::absent) note(PositionAccess::undecided);
  }));
}

void PositionHub::watchArrivals() {
  if (arrivals_) return;
  arrivals_ = provider_->watchArrivals([this] {
    if (!isAsking_) arrivals_ = nullptr;
    askAgain();
    if (access_ == PositionAccess::absent) note(PositionAccess::undecided);
  });
}

void PositionHub::askPermission() {
  isAsking_ = true;
  watchArrivals();
  askAgain();
}

void PositionHub::askAgain() {
  // Nobody looks at these positions: the filter keeps them few.
  constexpr double kFilterMetres = 500;
  if (isAsking_ && !question_) question_ = open(kFilterMetres, [](const Location&) {});
}

std::unique_ptr<PositionStream> PositionHub::open(double distanceFilter,
                                                  std::function<void(const Location&)> onLocation) {
  const auto answer = std::make_shared<Answer>();
  answers_.push_back(answer);
  auto stream = provider_->open(
      distanceFilter,
      {.onLocation = life_.guard([this, onLocation = std::move(onLocation)](const Location& found) {
         if (isAuthorized(status())) onLocation(found);
       }),
       .onAccess = life_.guard([this, weak = std::weak_ptr(answer)](PositionAccess access) {
         const auto kept = weak.lock();
         if (!kept) return;
         *kept = access;
         noteAnswers();
       })});
  const auto onClosed =
      life_.guard([this] { mainQueue_->async(life_.guard([this] { noteAnswers(); })); });
  return std::make_unique<Stream>(std::move(stream), answer, onClosed);
}

void PositionHub::noteAnswers() {
  std::erase_if(answers_, [](const auto& answer) { return answer.expired(); });
  Answer strongest;
  for (const auto& weak : answers_) strongest = std::max(strongest, *weak.lock());
  if (!strongest) return;
  if (*strongest != PositionAccess::undecided) question_ = nullptr;
  if (*strongest >= PositionAccess::denied) {
    isAsking_ = false;
    arrivals_ = nullptr;
  }
  note(*strongest);
}

void PositionHub::onStatusChanged(std::weak_ptr<const void> owner, std::function<void()> handler) {
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
