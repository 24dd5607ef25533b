#import "bindings/objc/src/IdentityMap.h"

namespace twins {

IdentityMap& IdentityMap::shared() {
  static auto& map = *new IdentityMap;
  return map;
}

id IdentityMap::twin(const void* object, const std::function<id()>& make) {
  std::unique_lock lock(mutex_);
  const auto entry = twins_.find(object);
  const id twin = entry == twins_.end() ? make() : [entry->second retain];
  twins_[object] = twin;
  lock.unlock();
  return [twin autorelease];
}

std::unique_lock<std::mutex> IdentityMap::beginRelease(id twin, const void* object) {
  std::unique_lock lock(mutex_);
  if ([twin retainCount] == 1) {
    const auto entry = twins_.find(object);
    if (entry != twins_.end() && entry->second == twin) twins_.erase(entry);
    lock.unlock();
  }
  return lock;
}

std::size_t IdentityMap::size() const {
  const std::lock_guard lock(mutex_);
  return twins_.size();
}

}  // namespace twins
