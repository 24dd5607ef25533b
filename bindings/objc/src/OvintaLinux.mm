#import <OvintaObjC/OvintaLinux.h>

#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Values.h"
#include "platform/linux/Linux.h"

namespace platform = ovinta::platform;

@implementation OvintaLinux

+ (void)installWithApplicationID:(NSString*)applicationID {
  twins::callLibrary([&] {
    platform::install(
        platform::linuxos::makeServices({.applicationID = twins::text(applicationID)}));
  });
}

+ (void)runMainLoop {
  twins::callLibrary([] { platform::linuxos::runMainLoop(); });
}

+ (void)quitMainLoop {
  twins::callLibrary([] { platform::linuxos::quitMainLoop(); });
}

@end
