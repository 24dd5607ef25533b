#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"
#import "bindings/objc/src/ObjectStore.h"

using Cpp = ovinta::CoreOrder;

@implementation CoreOrder

+ (OvintaFetchRequest*)fetchRequest {
  return [[[OvintaFetchRequest alloc]
      initWithEntityName:twins::toObjC(Cpp::fetchRequest().entityName)] autorelease];
}

- (instancetype)initWithEntity:(OvintaEntityDescription*)entity
    insertIntoManagedObjectContext:(OvintaManagedObjectContext*)context {
  return
      [self initWithNative:twins::initialising(self, [&] {
              const auto* const store =
                  context ? static_cast<const twins::OpenStore*>(context->store_) : nullptr;
              return twins::wrap(twins::callLibrary([&] {
                return Cpp::withEntity(twins::object<ovinta::platform::EntityDescription>(entity),
                                       store ? store->context.get() : nullptr);
              }));
            })];
}

OVINTA_GETTER(int64_t, id)
OVINTA_GETTER(NSString*, partnerIdentifier)
OVINTA_GETTER(int64_t, siteId)
OVINTA_GETTER(int64_t, state)
OVINTA_GETTER(int64_t, customerState)

- (void)setId:(int64_t)number {
  twins::object<Cpp>(self).setId(number);
}

- (void)setPartnerIdentifier:(NSString*)partnerIdentifier {
  twins::object<Cpp>(self).setPartnerIdentifier(twins::optionalText(partnerIdentifier));
}

- (void)setSiteId:(int64_t)siteId {
  twins::object<Cpp>(self).setSiteId(siteId);
}

- (void)setState:(int64_t)state {
  twins::object<Cpp>(self).setState(state);
}

- (void)setCustomerState:(int64_t)customerState {
  twins::object<Cpp>(self).setCustomerState(customerState);
}

@end
