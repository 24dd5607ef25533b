#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Sets a new password with the token of a reset message. The service checks all three, which are
/// always sent; never log them.
@interface SetNewPassword : OvintaRecord
/// With the token of the message, the new password, and the same once more as the customer repeated
/// it.
- (instancetype)initWithResetPasswordToken:(NSString*)resetPasswordToken
                                  password:(NSString*)password
                              confirmation:(NSString*)confirmation;
/// As they were given.
@property(nonatomic, readonly, copy) NSString* resetPasswordToken;
@property(nonatomic, readonly, copy) NSString* password;
@property(nonatomic, readonly, copy) NSString* confirmation;
@end

NS_ASSUME_NONNULL_END
