#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Turns an anonymous account into one with e-mail address and password. The service checks all
/// three, which are always sent; never log the passwords.
@interface SignUpInfo : OvintaRecord
/// With the address to log in with, the password, and the same once more.
- (instancetype)initWithEmailAddress:(NSString*)emailAddress
                            password:(NSString*)password
                passwordConfirmation:(NSString*)passwordConfirmation;
/// As they were given.
@property(nonatomic, readonly, copy) NSString* emailAddress;
@property(nonatomic, readonly, copy) NSString* password;
@property(nonatomic, readonly, copy) NSString* passwordConfirmation;
@end

NS_ASSUME_NONNULL_END
