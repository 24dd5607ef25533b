#pragma once

namespace ovinta::sandbox {

/// Wakes threads that wait for a socket, for good. May be used from any thread.
class WakeSignal {
 public:
  WakeSignal();
  ~WakeSignal();
  WakeSignal(const WakeSignal&) = delete;
  WakeSignal& operator=(const WakeSignal&) = delete;

  void raise();

  /// Readable from `raise` on.
  int descriptor() const { return descriptor_; }

 private:
  const int descriptor_;
};

}  // namespace ovinta::sandbox
