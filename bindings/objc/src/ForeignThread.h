#pragma once

#import <Foundation/Foundation.h>

namespace twins {

/// As long as it lives, the calling thread, whoever started it, may run Objective-C code: it is
/// known to the runtime and has an autorelease pool.
class ForeignThread {
 public:
  ForeignThread();
  ~ForeignThread();
  ForeignThread(const ForeignThread&) = delete;
  ForeignThread& operator=(const ForeignThread&) = delete;

 private:
  BOOL isRegisteredHere_;
  NSAutoreleasePool* pool_;
};

}  // namespace twins
