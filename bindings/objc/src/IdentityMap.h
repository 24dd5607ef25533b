#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <mutex>
#include <unordered_map>

namespace twins {

/// Knows the live twin of each of the library's objects that has one, and does not keep it alive.
/// A twin keeps its object alive, so that no address is met again while it stands here. May be used
/// from any thread.
class IdentityMap {
 public:
  static IdentityMap& shared();

  /// The object's live twin, else the one that `make` makes and that is the object's from now on.
  id twin(const void* object, const std::function<id()>& make);

  /// Goes before every release of the twin, which is to happen under the lock that comes back. The
  /// last one is not: the twin has then left the map and cannot be found any more.
  std::unique_lock<std::mutex> beginRelease(id twin, const void* object);

  std::size_t size() const;

 private:
  mutable std::mutex mutex_;
  std::unordered_map<const void*, id> twins_;
};

}  // namespace twins
