#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, OrdersManagerErrorType) {
  OrdersManagerErrorTypeLoadingCustomer = 0,
  OrdersManagerErrorTypeLoadingApiUrl = 1,
  OrdersManagerErrorTypeAlreadyFetching = 2
};

/// The message of errors of that type. A value that is none of the cases ends the process.
OVINTA_EXTERN NSString* OrdersManagerErrorTypeRawValue(OrdersManagerErrorType type);

/// The orders manager refused a request before sending it.
@interface OrdersManagerError : OvintaError
@property(nonatomic, readonly) OrdersManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
