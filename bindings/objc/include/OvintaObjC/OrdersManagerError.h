#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Why a request is refused: there is no current customer, and none could be made; no base URL is
/// stored; another fetch is under way.
typedef NS_ENUM(NSInteger, OrdersManagerErrorType) {
  OrdersManagerErrorTypeLoadingCustomer = 0,
  OrdersManagerErrorTypeLoadingApiUrl = 1,
  OrdersManagerErrorTypeAlreadyFetching = 2
};

/// The English message of errors of that type. May be called from any thread. A value that is none
/// of the cases ends the process.
OVINTA_EXTERN NSString* OrdersManagerErrorTypeRawValue(OrdersManagerErrorType type);

/// The orders manager refused a request before sending it.
@interface OrdersManagerError : OvintaError
/// The reason.
@property(nonatomic, readonly) OrdersManagerErrorType type;
@end

NS_ASSUME_NONNULL_END
