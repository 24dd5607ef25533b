#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/MainQueue.h"
#include "platform/linux/location/KeptAccess.h"
#include "platform/linux/location/PositionProvider.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// What all that follow the position share: the provider, and what it has said of the permission.
/// Main thread only, save the three queries and `findService`.
class PositionHub {
 public:
  /// `kept` holds the last answer, which is in force until there is another; without it each
  /// process begins without an answer.
  PositionHub(std::shared_ptr<PositionProvider> provider, std::shared_ptr<MainQueue> mainQueue,
              std::optional<KeptAccess> kept = {});
  ~PositionHub();
  PositionHub(const PositionHub&) = delete;
  PositionHub& operator=(const PositionHub&) = delete;

  /// Whether location is switched on at all, and the permission, as the last answer says. May be
  /// called from any thread, as `isOfOld`.
  bool isEnabled() const;
  AuthorizationStatus status() const;
  /// Whether the last answer is still the one to the process before.
  bool isOfOld() const;

  /// Finds out, soon after the first call, whether there is a service, and notices one that comes
  /// later. May be called from any thread.
  void findService();

  /// Asks for the permission, and follows the position just until there is an answer, which
  /// `onStatusChanged` tells. Where there is no service, or location is switched off, the question
  /// rests, at no cost, until the service comes or somebody calls `askAgain` or this. While an
  /// answer is awaited, further calls do nothing.
  void askPermission();

  /// Asks again if there was a question that has not been answered, or if what was granted has been
  /// out of reach since.
  void askAgain();

  /// Follows the position as long as the result lives. Positions come while the permission lasts;
  /// `onLocation` is called as `PositionHandlers` say.
  std::unique_ptr<PositionStream> open(double distanceFilter,
                                       std::function<void(const Location&)> onLocation);

  /// Has `handler` called at each change of the permission until `owner` expires.
  void onStatusChanged(std::weak_ptr<const void> owner, std::function<void()> handler);

  MainQueue& mainQueue() const { return *mainQueue_; }

 private:
  class Stream;

  struct Observer {
    std::weak_ptr<const void> owner;
    std::function<void()> handler;
  };

  void watchArrivals();
  void forget(const Stream& stream);
  void dismissRefusals();
  void noteAnswers();
  void noteService(bool isThere);
  void note(PositionAccess access);
  /// The answer in force; looks for the one that was kept when it is first asked for.
  std::atomic<PositionAccess>& access() const;

  const std::shared_ptr<PositionProvider> provider_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const std::optional<KeptAccess> kept_;
  /// The strongest answer of the streams that are open, and the last one when none is. At first
  /// that of the process before, or absent, when nobody has been asked.
  mutable std::atomic<PositionAccess> access_ = PositionAccess::absent;
  /// Whether `access_` is from the process before.
  mutable std::atomic<bool> isOfOld_ = false;
  mutable std::once_flag isLoaded_;
  /// The streams that are open, each of which leaves the list itself.
  std::vector<Stream*> streams_;
  /// Whether the application waits for an answer.
  bool isAsking_ = false;
  /// The stream that asks for the permission; null while nothing is asked or the question rests.
  std::unique_ptr<Stream> question_;
  std::atomic<bool> hasLooked_ = false;
  /// Watches for the service; null while one that comes would make no difference.
  std::shared_ptr<void> arrivals_;
  std::vector<Observer> observers_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
