#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"

@implementation OvintaSettingsStore

+ (OvintaSettingsStore*)standard {
  static OvintaSettingsStore* const store = [[OvintaSettingsStore alloc] init];
  return store;
}

- (NSString*)stringForKey:(UserDefaultsKey*)key {
  return twins::callLibrary([&] {
    return twins::toObjC(ovinta::stringForKey(*ovinta::platform::services().settings,
                                              twins::object<ovinta::UserDefaultsKey>(key)));
  });
}

@end
