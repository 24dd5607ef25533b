#import "bindings/objc/src/Blocks.h"

using twins::callback;
using twins::callLibrary;
using twins::object;
using twins::optionalText;

static ovinta::SitesManager& manager() { return ovinta::Ovinta::sites(); }

@implementation SitesManager

- (NSArray*)all {
  return callLibrary([] { return twins::toObjC(manager().all()); });
}

- (void)setAll:(NSArray*)all {
  callLibrary([&] { manager().setAll(twins::optionalList<ovinta::Site>(all)); });
}

- (void)fetchWithQuery:(NSString*)query page:(int64_t)page callback:(SitesPageCallback)block {
  callLibrary([&] {
    manager().fetch(optionalText(query), page, callback<ovinta::SitesPageCallback>(block));
  });
}

- (void)fetchAllWithQuery:(NSString*)query callback:(SitesCallback)block {
  callLibrary(
      [&] { manager().fetchAll(optionalText(query), callback<ovinta::SitesCallback>(block)); });
}

- (void)fetchWithRegion:(OvintaCircularRegion*)region
                   page:(int64_t)page
               callback:(SitesCallback)block {
  callLibrary([&] {
    manager().fetch(object<ovinta::platform::CircularRegion>(region), page,
                    callback<ovinta::SitesCallback>(block));
  });
}

- (void)fetchWithRegion:(OvintaCircularRegion*)region
                   page:(int64_t)page
                    per:(int64_t)per
               callback:(SitesCallback)block {
  callLibrary([&] {
    manager().fetch(object<ovinta::platform::CircularRegion>(region), page, per,
                    callback<ovinta::SitesCallback>(block));
  });
}

@end
