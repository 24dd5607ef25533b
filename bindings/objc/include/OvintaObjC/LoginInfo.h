#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What a customer logs in with.
@interface LoginInfo : OvintaRecord
- (instancetype)initWithEmailAddress:(NSString*)emailAddress password:(NSString*)password;
@property(nonatomic, readonly, copy) NSString* emailAddress;
@property(nonatomic, readonly, copy) NSString* password;
@end

NS_ASSUME_NONNULL_END
