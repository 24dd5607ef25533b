#import "bindings/objc/src/Calls.h"

#import <Foundation/Foundation.h>

#import "bindings/objc/src/ExceptionGuard.h"
#import "bindings/objc/src/ForeignThread.h"
#include "platform/Services.h"

namespace twins {
namespace {

void logException(const char* text) {
  ovinta::platform::services().log->write(std::string("An exception left a block: ") + text);
}

}  // namespace

void enterLibrary(const std::function<void()>& call) {
  if (const auto exception = standardException(call)) {
    [NSException raise:NSInternalInconsistencyException format:@"%s", exception->c_str()];
  }
}

void callApplication(const std::function<void()>& call) {
  const ForeignThread thread;
  const auto exception = anyException([&] {
    @try {
      call();
    } @catch (NSException* raised) {
      logException([[raised description] UTF8String]);
    }
  });
  // The log, too, is foreign code.
  if (exception) (void)anyException([&] { logException(exception->c_str()); });
}

}  // namespace twins
