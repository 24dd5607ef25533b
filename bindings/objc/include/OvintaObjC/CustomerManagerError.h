#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Why a request is refused: no base URL is stored; there is no current customer to update or sign
/// up; a claim that would have to create the customer comes without consent.
typedef NS_ENUM(NSInteger, CustomerManagerErrorType) {
  CustomerManagerErrorTypeLoadingApiUrl = 0,
  CustomerManagerErrorTypeLoadingCustomer = 1,
  CustomerManagerErrorTypeMissingCustomerConsent = 2
};

/// The English message of errors of that type. May be called from any thread. A value that is none
/// of the cases ends the process.
OVINTA_EXTERN NSString* CustomerManagerErrorTypeRawValue(CustomerManagerErrorType type);

/// The customer manager, or the orders manager on its behalf, refused a request before sending it.
@interface CustomerManagerError : OvintaError
/// The reason.
@property(nonatomic, readonly) CustomerManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
