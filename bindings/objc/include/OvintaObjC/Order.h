#import <OvintaObjC/BeaconRegion.h>
#import <OvintaObjC/CustomerState.h>
#import <OvintaObjC/OrderState.h>
#import <OvintaObjC/OvintaLocation.h>
#import <OvintaObjC/PickupWindow.h>

NS_ASSUME_NONNULL_BEGIN

/// One pickup order as the service sent it. The orders manager changes the same object in place
/// when an event or a push moves the order on. May be used from any thread: each property is safe
/// by itself, nothing is promised across properties.
@interface Order : OvintaRecord
@property(nonatomic, readonly) int64_t id;
@property(nonatomic, readonly) int64_t siteID;
@property(nonatomic, readonly, copy, nullable) NSString* partnerIdentifier;
@property(nonatomic, readonly, copy, nullable) NSString* redemptionCode;
@property(nonatomic, readonly, copy, nullable) NSDate* redeemedAt;
@property(nonatomic, readonly, copy, nullable) NSString* displayName;
@property(nonatomic, readonly, nullable) PickupWindow* pickupWindow;

// The setters only store the value: nothing is sent, nothing is written to the order store.
@property(nonatomic) OrderState state;
@property(nonatomic) CustomerState customerState;
@property(nonatomic, copy, nullable) NSString* pickupType;
@property(nonatomic, copy, nullable) NSDate* etaAt;
@property(nonatomic, copy, nullable) NSDate* completedAt;
@property(nonatomic, copy, nullable) NSDate* createdAt;
@property(nonatomic, copy, nullable) NSDate* updatedAt;
/// The customer's rating as text.
@property(nonatomic, copy, nullable) NSString* customerRating;
@property(nonatomic, copy, nullable) NSString* customerComment;
@property(nonatomic, copy, nullable) NSString* pushToken;

@property(nonatomic, readonly, copy, nullable) NSString* siteName;
@property(nonatomic, readonly, copy, nullable) NSString* sitePhone;
@property(nonatomic, readonly, copy, nullable) NSString* siteStreetAddress;
@property(nonatomic, readonly, copy, nullable) NSString* siteFullAddress;
@property(nonatomic, readonly, copy, nullable) NSString* siteLocality;
@property(nonatomic, readonly, copy, nullable) NSString* siteRegion;
@property(nonatomic, readonly, copy, nullable) NSString* siteCountry;
@property(nonatomic, readonly, copy, nullable) NSString* sitePostalCode;
/// Degrees as decimal text, as `siteLatitude`; see `siteLocation`.
@property(nonatomic, readonly, copy, nullable) NSString* siteLongitude;
@property(nonatomic, readonly, copy, nullable) NSString* siteLatitude;
@property(nonatomic, readonly, copy, nullable) NSString* siteInstructions;
@property(nonatomic, readonly, copy, nullable) NSString* siteDescription;
@property(nonatomic, readonly, copy, nullable) NSString* siteCoverPhotoURL;
@property(nonatomic, readonly, copy, nullable) NSArray<BeaconRegion*>* siteBeaconRegions;
@property(nonatomic, readonly, copy, nullable) NSString* sitePartnerIdentifier;

@property(nonatomic, readonly, copy, nullable) NSString* projectAccentColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectAccentTextColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectLogoURL;
@property(nonatomic, readonly) BOOL projectMobileFlowAlwaysShowVehicleInfoFields;
@property(nonatomic, readonly) BOOL projectMobileFlowCustomerNameEditingEnabled;
@property(nonatomic, readonly) BOOL projectMobileFlowPickupTypeSelectionEnabled;
@property(nonatomic, readonly) BOOL projectMobileFlowRequireVehicleInfoIfVisible;
@property(nonatomic, readonly, copy, nullable) NSString* curbsideLocalizedString;
@property(nonatomic, readonly, copy, nullable) NSString* pickupLocalizedString;

@property(nonatomic, readonly, copy, nullable) NSString* customerName;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarType;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarColor;
@property(nonatomic, readonly, copy, nullable) NSString* customerLicensePlate;

/// Whether both the store and the customer still have to act: the state is created, ready or
/// delayed, and the customer has not completed the journey.
- (BOOL)isOpen;

/// Where the site is; nil when a coordinate is, or is not a decimal number. The range of the
/// numbers is not checked.
- (nullable OvintaLocation*)siteLocation;

/// The distance to `siteLocation` in metres, along the WGS84 geodesic; nil when that is, not a
/// number when a latitude is out of range.
- (nullable NSNumber*)siteDistanceFrom:(OvintaLocation*)location;

/// The order in the form in which the service sends it; nil when a field cannot be written.
- (nullable NSString*)jsonText;
@end

NS_ASSUME_NONNULL_END
