#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Asks for a message with a token to reset the password.
@interface RequestPasswordReset : OvintaRecord
/// For the address of the account, to which the message goes; not checked.
- (instancetype)initWithEmail:(NSString*)email;
/// As it was given.
@property(nonatomic, readonly, copy) NSString* email;
@end

NS_ASSUME_NONNULL_END
