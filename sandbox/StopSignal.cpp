#include "sandbox/StopSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace ovinta::sandbox {

StopSignal::StopSignal() : descriptor_(::eventfd(0, EFD_CLOEXEC)) {
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

StopSignal::~StopSignal() { ::close(descriptor_); }

void StopSignal::raise() { ::eventfd_write(descriptor_, 1); }

}  // namespace ovinta::sandbox
