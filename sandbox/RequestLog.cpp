#include "sandbox/RequestLog.h"

#include <algorithm>

namespace ovinta::sandbox {

void RequestLog::add(std::string_view method, std::string_view target, int status) {
  std::string path(target.substr(0, target.find('?')));
  // A target can hold any bytes; a JSON text cannot.
  std::ranges::replace_if(
      path, [](char byte) { return byte < ' ' || byte > '~'; }, '?');
  const std::lock_guard lock(mutex_);
  if (requests_.size() == kMostKept) requests_.pop_front();
  requests_.push_back({{"method", method}, {"path", path}, {"status", status}});
}

platform::List RequestLog::list() const {
  const std::lock_guard lock(mutex_);
  return {requests_.begin(), requests_.end()};
}

}  // namespace ovinta::sandbox
