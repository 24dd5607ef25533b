#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Turns an anonymous account into one with e-mail address and password.
@interface SignUpInfo : OvintaRecord
- (instancetype)initWithEmailAddress:(NSString*)emailAddress
                            password:(NSString*)password
                passwordConfirmation:(NSString*)passwordConfirmation;
@property(nonatomic, readonly, copy) NSString* emailAddress;
@property(nonatomic, readonly, copy) NSString* password;
@property(nonatomic, readonly, copy) NSString* passwordConfirmation;
@end

NS_ASSUME_NONNULL_END
