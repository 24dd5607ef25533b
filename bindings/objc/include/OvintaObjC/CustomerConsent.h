#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What an anonymous customer agrees to when the account is created. The service judges the values.
@interface CustomerConsent : OvintaRecord
/// Agreement to the terms of service, and to being of the age that they ask for.
- (instancetype)initWithTermsOfService:(BOOL)termsOfService ageVerification:(BOOL)ageVerification;
/// As they were given.
@property(nonatomic, readonly) BOOL termsOfService;
@property(nonatomic, readonly) BOOL ageVerification;
@end

NS_ASSUME_NONNULL_END
