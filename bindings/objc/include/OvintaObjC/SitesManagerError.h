#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, SitesManagerErrorType) { SitesManagerErrorTypeLoadingApiUrl = 0 };

/// The message of errors of that type. A value that is none of the cases ends the process.
OVINTA_EXTERN NSString* SitesManagerErrorTypeRawValue(SitesManagerErrorType type);

/// The sites manager refused a request before sending it.
@interface SitesManagerError : OvintaError
@property(nonatomic, readonly) SitesManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
