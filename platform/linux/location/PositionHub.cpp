#include "platform/linux/location/PositionHub.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos {
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
      return {false, kAuthorizationRestricted};
    case PositionAccess::denied:
      return {true, kAuthorizationDenied};
    case PositionAccess::granted:
      return {true, kAuthorizedWhenInUse};
    case PositionAccess::grantedAlways:
      return {true, kAuthorizedAlways};
  }
  return {false, kAuthorizationNotDetermined};
}

}  // namespace

/// A stream of the provider, whose answer counts while the stream is open. It may outlive the hub.
class PositionHub::Stream : public PositionStream {
 public:
  Stream(PositionHub& hub, double distanceFilter, std::function<void(const Location&)> onLocation)
      : hub_(hub),
        hubLifetime_(hub.lifetime_.watch()),
        distanceFilter_(distanceFilter),
        onLocation_(std::move(onLocation)) {
    open();
    hub.streams_.push_back(this);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() override {
    if (!hubLifetime_.expired()) hub_.forget(*this);
  }

  void setDistanceFilter(double metres) override {
    distanceFilter_ = metres;
    stream_->setDistanceFilter(metres);
  }

  /// The answer that the stream has been given; none at first.
  const std::optional<PositionAccess>& answer() const { return answer_; }
  bool isAnswered() const { return answer_ && *answer_ != PositionAccess::undecided; }
  bool isGranted() const { return answer_ && *answer_ >= PositionAccess::granted; }

  /// Has the stream's answer count no more. A stream that was refused asks anew; the others are
  /// told again by themselves.
  void dismissAnswer() {
    if (std::exchange(answer_, std::nullopt) == PositionAccess::denied) open();
  }

 private:
  void open() {
    stream_ = nullptr;
    stream_ = hub_.provider_->open(
        distanceFilter_,
        {.onLocation =
             hub_.lifetime_.guard([hub = &hub_, onLocation = onLocation_](const Location& at) {
               if (isAuthorized(hub->status())) onLocation(at);
             }),
         .onAccess = hub_.lifetime_.guard([this](PositionAccess access) { note(access); })});
  }

  void note(PositionAccess access) {
    const bool wasGranted = isGranted();
    answer_ = access;
    if (isGranted() && !wasGranted) hub_.dismissRefusals();
    // This is the last step, because it may destroy the stream.
    hub_.noteAnswers();
  }

  PositionHub& hub_;
  const std::weak_ptr<const void> hubLifetime_;
  double distanceFilter_;
  const std::function<void(const Location&)> onLocation_;
  std::optional<PositionAccess> answer_;
  std::unique_ptr<PositionStream> stream_;
};

PositionHub::PositionHub(std::shared_ptr<PositionProvider> provider,
                         std::shared_ptr<MainQueue> mainQueue, std::optional<KeptAccess> kept)
    : provider_(std::move(provider)), mainQueue_(std::move(mainQueue)), kept_(std::move(kept)) {}

PositionHub::~PositionHub() = default;

std::atomic<PositionAccess>& PositionHub::access() const {
  std::call_once(isLoaded_, [this] {
    const auto last = kept_ ? kept_->load() : std::nullopt;
    if (!last) return;
    access_ = *last;
    isOfOld_ = true;
  });
  return access_;
}

bool PositionHub::isEnabled() const { return read(access()).isEnabled; }

AuthorizationStatus PositionHub::status() const { return read(access()).status; }

bool PositionHub::isOfOld() const {
  access();
  return isOfOld_;
}

void PositionHub::findService() {
  if (hasLooked_.exchange(true)) return;
  mainQueue_->async(lifetime_.guard([this] {
    watchArrivals();
    provider_->findService(lifetime_.guard([this](bool isThere) { noteService(isThere); }));
  }));
}

void PositionHub::noteService(bool isThere) {
  const PositionAccess before = access();
  if (!isThere) {
    if (isOfOld_) note(PositionAccess::absent);
    return;
  }
  if (!isAsking_) arrivals_ = nullptr;
  if (before == PositionAccess::absent) note(PositionAccess::undecided);
}

void PositionHub::watchArrivals() {
  if (arrivals_) return;
  arrivals_ = provider_->watchArrivals([this] {
    if (!isAsking_) arrivals_ = nullptr;
    // Streams that are open notice the service themselves, unless they were refused for good.
    const auto isRefused = [](const Stream* stream) {
      return stream->answer() == PositionAccess::denied;
    };
    if (std::ranges::all_of(streams_, isRefused)) askAgain();
    if (access() == PositionAccess::absent) note(PositionAccess::undecided);
  });
}

void PositionHub::askPermission() {
  isAsking_ = true;
  watchArrivals();
  askAgain();
}

void PositionHub::askAgain() {
  // Nobody looks at these positions, so the filter keeps them few.
  constexpr double kFilterMetres = 500;
  if (isAsking_ && !question_) {
    question_ = std::make_unique<Stream>(*this, kFilterMetres, [](const Location&) {});
  }
}

std::unique_ptr<PositionStream> PositionHub::open(double distanceFilter,
                                                  std::function<void(const Location&)> onLocation) {
  return std::make_unique<Stream>(*this, distanceFilter, std::move(onLocation));
}

void PositionHub::forget(const Stream& stream) {
  std::erase(streams_, &stream);
  mainQueue_->async(lifetime_.guard([this, isAnswered = stream.isAnswered()] {
    noteAnswers();
    // A question may have been left to the stream, which has gone without an answer.
    if (!isAnswered && streams_.empty()) askAgain();
  }));
}

/// Has the refusals count no more that other streams were given before a grant: they would stand
/// otherwise when the stream that was granted closes.
void PositionHub::dismissRefusals() {
  for (Stream* const stream : streams_) {
    if (!stream->isGranted()) stream->dismissAnswer();
  }
}

void PositionHub::noteAnswers() {
  std::optional<PositionAccess> strongest;
  for (const Stream* stream : streams_) strongest = std::max(strongest, stream->answer());
  if (!strongest) return;
  if (question_ && question_->isAnswered()) question_ = nullptr;
  const bool isRefused = *strongest == PositionAccess::denied && !question_;
  if (isRefused || *strongest >= PositionAccess::granted) {
    isAsking_ = false;
    question_ = nullptr;
    arrivals_ = nullptr;
  } else if (isAuthorized(status())) {
    // What was granted is out of reach, and nobody may be there to see it come back.
    isAsking_ = true;
    watchArrivals();
  }
  note(*strongest);
}

void PositionHub::onStatusChanged(std::weak_ptr<const void> owner, std::function<void()> handler) {
  observers_.push_back({std::move(owner), std::move(handler)});
}

void PositionHub::note(PositionAccess access) {
  const AuthorizationStatus before = status();
  // A service that has not answered yet takes nothing back of what the process before was told.
  if (isOfOld_ && access == PositionAccess::undecided) return;
  isOfOld_ = false;
  if (access_.exchange(access) != access && kept_) kept_->store(access);
  if (status() == before) return;
  std::erase_if(observers_, [](const Observer& observer) { return observer.owner.expired(); });
  // A copy is walked, because a handler may make and destroy managers.
  const auto observers = observers_;
  for (const Observer& observer : observers) {
    if (!observer.owner.expired()) observer.handler();
  }
}

}  // namespace ovinta::platform::linuxos
