#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Why a request is refused: no base URL is stored.
typedef NS_ENUM(NSInteger, SitesManagerErrorType) { SitesManagerErrorTypeLoadingApiUrl = 0 };

/// The English message of errors of that type. May be called from any thread. A value that is none
/// of the cases ends the process.
OVINTA_EXTERN NSString* SitesManagerErrorTypeRawValue(SitesManagerErrorType type);

/// The sites manager refused a request before sending it.
@interface SitesManagerError : OvintaError
/// The reason.
@property(nonatomic, readonly) SitesManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
