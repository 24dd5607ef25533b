#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What a customer logs in with; the service checks it. Never log the password.
@interface LoginInfo : OvintaRecord
/// Both are always sent, as they were given.
- (instancetype)initWithEmailAddress:(NSString*)emailAddress password:(NSString*)password;
@property(nonatomic, readonly, copy) NSString* emailAddress;
@property(nonatomic, readonly, copy) NSString* password;
@end

NS_ASSUME_NONNULL_END
