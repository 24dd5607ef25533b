#include "sandbox/http/WakeSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace ovinta::sandbox {

WakeSignal::WakeSignal() : descriptor_(::eventfd(0, EFD_CLOEXEC)) {
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

WakeSignal::~WakeSignal() { ::close(descriptor_); }

void WakeSignal::raise() { ::eventfd_write(descriptor_, 1); }

void WakeSignal::lower() {
  eventfd_t count = 0;
  ::eventfd_read(descriptor_, &count);
}

}  // namespace ovinta::sandbox
