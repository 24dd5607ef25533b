#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Order;

@implementation Order

OVINTA_GETTER(int64_t, id)
OVINTA_GETTER(int64_t, siteID)
OVINTA_GETTER(NSString*, partnerIdentifier)
OVINTA_GETTER(NSString*, redemptionCode)
OVINTA_GETTER(NSDate*, redeemedAt)
OVINTA_GETTER(NSString*, displayName)
OVINTA_GETTER(PickupWindow*, pickupWindow)
OVINTA_GETTER(OrderState, state)
OVINTA_GETTER(CustomerState, customerState)
OVINTA_GETTER(NSString*, pickupType)
OVINTA_GETTER(NSDate*, etaAt)
OVINTA_GETTER(NSDate*, completedAt)
OVINTA_GETTER(NSDate*, createdAt)
OVINTA_GETTER(NSDate*, updatedAt)
OVINTA_GETTER(NSString*, customerRating)
OVINTA_GETTER(NSString*, customerComment)
OVINTA_GETTER(NSString*, pushToken)
OVINTA_GETTER(NSString*, siteName)
OVINTA_GETTER(NSString*, sitePhone)
OVINTA_GETTER(NSString*, siteStreetAddress)
OVINTA_GETTER(NSString*, siteFullAddress)
OVINTA_GETTER(NSString*, siteLocality)
OVINTA_GETTER(NSString*, siteRegion)
OVINTA_GETTER(NSString*, siteCountry)
OVINTA_GETTER(NSString*, sitePostalCode)
OVINTA_GETTER(NSString*, siteLongitude)
OVINTA_GETTER(NSString*, siteLatitude)
OVINTA_GETTER(NSString*, siteInstructions)
OVINTA_GETTER(NSString*, siteDescription)
OVINTA_GETTER(NSString*, siteCoverPhotoURL)
OVINTA_GETTER(NSArray*, siteBeaconRegions)
OVINTA_GETTER(NSString*, sitePartnerIdentifier)
OVINTA_GETTER(NSString*, projectAccentColor)
OVINTA_GETTER(NSString*, projectAccentTextColor)
OVINTA_GETTER(NSString*, projectLogoURL)
OVINTA_GETTER(BOOL, projectMobileFlowAlwaysShowVehicleInfoFields)
OVINTA_GETTER(BOOL, projectMobileFlowCustomerNameEditingEnabled)
OVINTA_GETTER(BOOL, projectMobileFlowPickupTypeSelectionEnabled)
OVINTA_GETTER(BOOL, projectMobileFlowRequireVehicleInfoIfVisible)
OVINTA_GETTER(NSString*, curbsideLocalizedString)
OVINTA_GETTER(NSString*, pickupLocalizedString)
OVINTA_GETTER(NSString*, customerName)
OVINTA_GETTER(NSString*, customerCarType)
OVINTA_GETTER(NSString*, customerCarColor)
OVINTA_GETTER(NSString*, customerLicensePlate)
OVINTA_GETTER(BOOL, isOpen)
OVINTA_GETTER(OvintaLocation*, siteLocation)

- (void)setState:(OrderState)state {
  twins::object<Cpp>(self).setState(twins::state<ovinta::OrderState>(state));
}

- (void)setCustomerState:(CustomerState)customerState {
  twins::object<Cpp>(self).setCustomerState(twins::state<ovinta::CustomerState>(customerState));
}

- (void)setPickupType:(NSString*)pickupType {
  twins::object<Cpp>(self).setPickupType(twins::optionalText(pickupType));
}

- (void)setEtaAt:(NSDate*)etaAt {
  twins::object<Cpp>(self).setEtaAt(twins::optionalDate(etaAt));
}

- (void)setCompletedAt:(NSDate*)completedAt {
  twins::object<Cpp>(self).setCompletedAt(twins::optionalDate(completedAt));
}

- (void)setCreatedAt:(NSDate*)createdAt {
  twins::object<Cpp>(self).setCreatedAt(twins::optionalDate(createdAt));
}

- (void)setUpdatedAt:(NSDate*)updatedAt {
  twins::object<Cpp>(self).setUpdatedAt(twins::optionalDate(updatedAt));
}

- (void)setCustomerRating:(NSString*)customerRating {
  twins::object<Cpp>(self).setCustomerRating(twins::optionalText(customerRating));
}

- (void)setCustomerComment:(NSString*)customerComment {
  twins::object<Cpp>(self).setCustomerComment(twins::optionalText(customerComment));
}

- (void)setPushToken:(NSString*)pushToken {
  twins::object<Cpp>(self).setPushToken(twins::optionalText(pushToken));
}

- (NSNumber*)siteDistanceFrom:(OvintaLocation*)location {
  return twins::toObjC(
      twins::object<Cpp>(self).siteDistance(twins::object<ovinta::platform::Location>(location)));
}

- (NSString*)jsonText {
  return twins::toObjC(ovinta::jsonText(twins::object<Cpp>(self)));
}

@end
