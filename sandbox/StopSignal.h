#pragma once

namespace ovinta::sandbox {

/// Tells threads that wait for a socket that the service stops. May be used from any thread.
class StopSignal {
 public:
  StopSignal();
  ~StopSignal();
  StopSignal(const StopSignal&) = delete;
  StopSignal& operator=(const StopSignal&) = delete;

  void raise();

  /// Readable from `raise` on.
  int descriptor() const { return descriptor_; }

 private:
  const int descriptor_;
};

}  // namespace ovinta::sandbox
