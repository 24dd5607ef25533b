#pragma once

namespace ovinta::sandbox {

/// Wakes threads that wait for a socket. May be used from any thread.
class WakeSignal {
 public:
  WakeSignal();
  ~WakeSignal();
  WakeSignal(const WakeSignal&) = delete;
  WakeSignal& operator=(const WakeSignal&) = delete;

  void raise();

  /// Lets the next one wait again; for the only thread that does, once it was woken.
  void lower();

  /// Readable from `raise` on, until it is lowered.
  int descriptor() const { return descriptor_; }

 private:
  const int descriptor_;
};

}  // namespace ovinta::sandbox
