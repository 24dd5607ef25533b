#import <OvintaObjC/BeaconRegion.h>
#import <OvintaObjC/CustomerState.h>
#import <OvintaObjC/OrderState.h>
#import <OvintaObjC/OvintaLocation.h>
#import <OvintaObjC/PickupWindow.h>

NS_ASSUME_NONNULL_BEGIN

/// One pickup order as the service sent it. The orders manager changes the same object in place
/// when an event or a push moves the order on. May be used from any thread: each property is safe
/// by itself, nothing is promised across properties. What the service left out is nil; texts are as
/// it sent them.
@interface Order : OvintaRecord
/// The service's numbers for the order and for its site, and the retailer's own identifier.
@property(nonatomic, readonly) int64_t id;
@property(nonatomic, readonly) int64_t siteID;
@property(nonatomic, readonly, copy, nullable) NSString* partnerIdentifier;
/// The code by which a customer finds and claims the order, and when that was done.
@property(nonatomic, readonly, copy, nullable) NSString* redemptionCode;
@property(nonatomic, readonly, copy, nullable) NSDate* redeemedAt;
/// The order's name for people.
@property(nonatomic, readonly, copy, nullable) NSString* displayName;
/// When it is to be picked up.
@property(nonatomic, readonly, nullable) PickupWindow* pickupWindow;

/// Where the store and where the customer stands. The setters only store the value, here and in all
/// that follow: nothing is sent, nothing is written to the order store, no notification is posted
/// and `OrdersManager.open` stays as it is.
@property(nonatomic) OrderState state;
@property(nonatomic) CustomerState customerState;
/// How the order is to be picked up, as in `ClaimOrderInfo`.
@property(nonatomic, copy, nullable) NSString* pickupType;
/// When the customer is expected.
@property(nonatomic, copy, nullable) NSDate* etaAt;
/// When the order ended, was made and last changed at the service.
@property(nonatomic, copy, nullable) NSDate* completedAt;
@property(nonatomic, copy, nullable) NSDate* createdAt;
@property(nonatomic, copy, nullable) NSDate* updatedAt;
/// The customer's rating as text, and what the customer said with it.
@property(nonatomic, copy, nullable) NSString* customerRating;
@property(nonatomic, copy, nullable) NSString* customerComment;
/// The push token to which the service sends the order's pushes.
@property(nonatomic, copy, nullable) NSString* pushToken;

/// Name, phone number and address of the site, in words for people.
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
/// What the customer is to do at the site, what the site is, and where its picture is.
@property(nonatomic, readonly, copy, nullable) NSString* siteInstructions;
@property(nonatomic, readonly, copy, nullable) NSString* siteDescription;
@property(nonatomic, readonly, copy, nullable) NSString* siteCoverPhotoURL;
/// The beacons that stand at the site; listened for while the order is open.
@property(nonatomic, readonly, copy, nullable) NSArray<BeaconRegion*>* siteBeaconRegions;
/// The retailer's own identifier of the site.
@property(nonatomic, readonly, copy, nullable) NSString* sitePartnerIdentifier;

/// Colours and logo with which the application may show the site's project.
@property(nonatomic, readonly, copy, nullable) NSString* projectAccentColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectAccentTextColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectLogoURL;
/// What the project wants of the application's screens; the library does not act on it.
@property(nonatomic, readonly) BOOL projectMobileFlowAlwaysShowVehicleInfoFields;
@property(nonatomic, readonly) BOOL projectMobileFlowCustomerNameEditingEnabled;
@property(nonatomic, readonly) BOOL projectMobileFlowPickupTypeSelectionEnabled;
@property(nonatomic, readonly) BOOL projectMobileFlowRequireVehicleInfoIfVisible;
/// The service's words for people for a pickup at the curb, and for a pickup.
@property(nonatomic, readonly, copy, nullable) NSString* curbsideLocalizedString;
@property(nonatomic, readonly, copy, nullable) NSString* pickupLocalizedString;

/// The customer's name and vehicle, as the order was made with them.
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
