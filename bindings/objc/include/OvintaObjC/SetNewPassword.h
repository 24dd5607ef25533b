#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Sets a new password with the token of a reset message.
@interface SetNewPassword : OvintaRecord
- (instancetype)initWithResetPasswordToken:(NSString*)resetPasswordToken
                                  password:(NSString*)password
                              confirmation:(NSString*)confirmation;
@property(nonatomic, readonly, copy) NSString* resetPasswordToken;
@property(nonatomic, readonly, copy) NSString* password;
@property(nonatomic, readonly, copy) NSString* confirmation;
@end

NS_ASSUME_NONNULL_END
