#pragma once

#import <Foundation/Foundation.h>

namespace twins {

/// As long as it lives, the calling thread, whoever started it, is known to the runtime.
class ForeignThread {
 public:
  ForeignThread();
  ~ForeignThread();
  ForeignThread(const ForeignThread&) = delete;
  ForeignThread& operator=(const ForeignThread&) = delete;

 private:
  BOOL isRegisteredHere_;
};

}  // namespace twins
