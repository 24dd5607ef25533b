#import "bindings/objc/src/Calls.h"

#import <Foundation/Foundation.h>

#import "bindings/objc/src/ExceptionGuard.h"
#import "bindings/objc/src/ForeignThread.h"
#include "platform/Services.h"

namespace twins {
namespace {

void logException(const std::string& text) {
  ovinta::platform::services().log->write("An exception left the application's code: " + text);
}

/// Also of a text that holds half a character.
std::string described(NSObject* raised) {
  NSData* const bytes = [[raised description] dataUsingEncoding:NSUTF8StringEncoding
                                           allowLossyConversion:YES];
  return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

/// Logs what leaves the call.
void guarded(const std::function<void()>& call) {
  const auto exception = anyException([&] {
    @try {
      call();
    } @catch (NSObject* raised) {
      logException(described(raised));
    }
  });
  // The log, too, is foreign code.
  if (exception) (void)anyException([&] { logException(*exception); });
}

}  // namespace

void enterLibrary(const std::function<void()>& call) {
  if (const auto exception = standardException(call)) {
    [NSException raise:NSInternalInconsistencyException format:@"%s", exception->c_str()];
  }
}

void callApplication(const std::function<void()>& call) {
  const ForeignThread thread;
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  guarded(call);
  // Runs the application's code as well, as objects are deallocated.
  guarded([pool] { [pool drain]; });
}

}  // namespace twins
