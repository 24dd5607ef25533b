#import "bindings/objc/src/ForeignThread.h"

#ifdef GNUSTEP
#import <Foundation/NSThread.h>
#else
static BOOL GSRegisterCurrentThread(void) { return NO; }
static void GSUnregisterCurrentThread(void) {}
#endif

namespace twins {

ForeignThread::ForeignThread() : isRegisteredHere_(GSRegisterCurrentThread()) {}

ForeignThread::~ForeignThread() {
  if (isRegisteredHere_) GSUnregisterCurrentThread();
}

}  // namespace twins
