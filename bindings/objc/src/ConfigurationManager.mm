#import "bindings/objc/src/Blocks.h"

@implementation ConfigurationManager

- (void)fetchWithCallback:(ConfigurationCallback)callback {
  twins::callLibrary([&] {
    ovinta::Ovinta::config().fetch(twins::callback<ovinta::ConfigurationCallback>(callback));
  });
}

@end
