// A compiler of plain Objective-C takes every header, and the C functions have C names.

#import <OvintaObjC/OvintaLinux.h>
#import <OvintaObjC/OvintaObjC.h>

BOOL OvintaPlainHeadersWork(void);

BOOL OvintaPlainHeadersWork(void) {
  PickupWindow* const window = [[PickupWindow alloc] init:[NSDate date]];
  const BOOL same = [window.start isEqual:window.end];
  [window release];
  return same && OrderStateIsOpen(OrderStateReady) && OvintaSDKVersionNumber > 0 &&
         [OvintaErrorDomain length] > 0 && [OvintaLinux class] &&
         [Ovinta.ordersUpdated isEqualToString:@"ordersUpdated"] &&
         [CustomerStateDescription(CustomerStateEnRoute) isEqualToString:@"En Route"];
}
