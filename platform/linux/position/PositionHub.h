#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/MainQueue.h"
#include "platform/linux/position/PositionProvider.h"

namespace ovinta::platform::linux {

/// What all that follow the position share: the provider, and what it has said of the permission.
/// Main thread only, save the two queries.
class PositionHub {
 public:
  PositionHub(std::shared_ptr<PositionProvider> provider, std::shared_ptr<MainQueue> mainQueue);

  /// May be called from any thread.
  bool isEnabled() const;
  AuthorizationStatus status() const;

  /// Finds out at the first call whether there is a service.
  void findService();

  /// Asks for the permission, and follows the position just until there is an answer, which
  /// `onStatusChanged` tells, or until it was told often enough that nobody has one. Meanwhile,
  /// further calls do nothing.
  void askPermission();

  /// Positions, while the permission lasts. `onLocation` is called as `PositionHandlers` say.
  std::unique_ptr<PositionStream> open(double distanceFilter,
                                       std::function<void(const Location&)> onLocation);

  /// Has `handler` called at each change of the permission until `owner` expires.
  void onStatusChanged(std::weak_ptr<void> owner, std::function<void()> handler);

  MainQueue& mainQueue() const { return *mainQueue_; }

 private:
  struct Observer {
    std::weak_ptr<void> owner;
    std::function<void()> handler;
  };

  void noteAnswer(PositionAccess access);
  void note(PositionAccess access);

  const std::shared_ptr<PositionProvider> provider_;
  const std::shared_ptr<MainQueue> mainQueue_;
  /// Absent at first, when nobody has been asked.
  std::atomic<PositionAccess> access_ = PositionAccess::absent;
  std::unique_ptr<PositionStream> question_;
  /// How often nobody had an answer since the question was asked.
  int unanswered_ = 0;
  bool hasLooked_ = false;
  bool hasBeenTold_ = false;
  std::vector<Observer> observers_;
  /// Expires with the hub.
  const std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ovinta::platform::linux
