#import <OvintaObjC/Geofence.h>
#import <OvintaObjC/OvintaLocation.h>

NS_ASSUME_NONNULL_BEGIN

/// A pickup site as the service lists it. What the service left out is nil; texts are as it sent
/// them.
@interface Site : OvintaRecord
/// The service's number for the site, and the retailer's own identifier.
@property(nonatomic, readonly) int64_t id;
@property(nonatomic, readonly, copy, nullable) NSString* partnerIdentifier;
/// Name, phone number and address, in words for people.
@property(nonatomic, readonly, copy, nullable) NSString* name;
@property(nonatomic, readonly, copy, nullable) NSString* phone;
@property(nonatomic, readonly, copy, nullable) NSString* streetAddress;
@property(nonatomic, readonly, copy, nullable) NSString* fullAddress;
@property(nonatomic, readonly, copy, nullable) NSString* locality;
@property(nonatomic, readonly, copy, nullable) NSString* region;
@property(nonatomic, readonly, copy, nullable) NSString* country;
@property(nonatomic, readonly, copy, nullable) NSString* postalCode;
/// Degrees as decimal text, as `latitude`; see `location`.
@property(nonatomic, readonly, copy, nullable) NSString* longitude;
@property(nonatomic, readonly, copy, nullable) NSString* latitude;
/// What the customer is to do there, what the site is, and where its picture is.
@property(nonatomic, readonly, copy, nullable) NSString* instructions;
@property(nonatomic, readonly, copy, nullable) NSString* descriptionText;
@property(nonatomic, readonly, copy, nullable) NSString* coverPhotoURL;
/// Colours and logo with which the application may show the site's project.
@property(nonatomic, readonly, copy, nullable) NSString* projectAccentColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectAccentTextColor;
@property(nonatomic, readonly, copy, nullable) NSString* projectLogoURL;
/// The circle that `NotifyManager` watches; a site without one is never notified of.
@property(nonatomic, readonly, nullable) Geofence* geofence;

/// Where the site is; nil when a coordinate is, or is not a decimal number. The range of the
/// numbers is not checked.
- (nullable OvintaLocation*)location;

/// The distance to `location` in metres, along the WGS84 geodesic; nil when that is, not a number
/// when a latitude is out of range.
- (nullable NSNumber*)distanceFrom:(OvintaLocation*)location;

/// The site in the form in which the service sends it; nil when a field cannot be written.
- (nullable NSString*)jsonText;
@end

NS_ASSUME_NONNULL_END
