#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What an anonymous customer agrees to when the account is created. The service judges the values.
@interface CustomerConsent : OvintaRecord
- (instancetype)initWithTermsOfService:(BOOL)termsOfService ageVerification:(BOOL)ageVerification;
@property(nonatomic, readonly) BOOL termsOfService;
@property(nonatomic, readonly) BOOL ageVerification;
@end

NS_ASSUME_NONNULL_END
