#import <OvintaObjC/CustomerInfo.h>

NS_ASSUME_NONNULL_BEGIN

/// The account as the service returns it.
@interface Customer : OvintaRecord
/// Authorises requests in the customer's name. Never show or log it.
@property(nonatomic, readonly, copy) NSString* token;
/// The address that the account logs in with; nil or empty for an anonymous one.
@property(nonatomic, readonly, copy, nullable) NSString* emailAddress;
/// Name, vehicle and phone.
@property(nonatomic, readonly) CustomerInfo* info;
/// Whether the account has an e-mail address; an anonymous one has none.
@property(nonatomic, readonly) BOOL registered;
@end

NS_ASSUME_NONNULL_END
