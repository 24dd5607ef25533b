#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, CustomerManagerErrorType) {
  CustomerManagerErrorTypeLoadingApiUrl = 0,
  CustomerManagerErrorTypeLoadingCustomer = 1,
  CustomerManagerErrorTypeMissingCustomerConsent = 2
};

/// The message of errors of that type. A value that is none of the cases ends the process.
OVINTA_EXTERN NSString* CustomerManagerErrorTypeRawValue(CustomerManagerErrorType type);

/// The customer manager, or the orders manager on its behalf, refused a request before sending it.
@interface CustomerManagerError : OvintaError
@property(nonatomic, readonly) CustomerManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
