#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Asks for a message with a token to reset the password.
@interface RequestPasswordReset : OvintaRecord
- (instancetype)initWithEmail:(NSString*)email;
@property(nonatomic, readonly, copy) NSString* email;
@end

NS_ASSUME_NONNULL_END
