#import "bindings/objc/src/Blocks.h"

using twins::callback;
using twins::callLibrary;
using twins::object;
using twins::text;

static ovinta::CustomerManager& manager() { return ovinta::Ovinta::customer(); }

/// The block, as the library calls it.
static ovinta::CustomerCallback reporting(CustomerCallback block) {
  return callback<ovinta::CustomerCallback>(block);
}

@implementation CustomerManager

- (Customer*)current {
  return callLibrary([] { return twins::toObjC(manager().current()); });
}

- (void)setCurrent:(Customer*)current {
  callLibrary(
      [&] { manager().setCurrent(current ? twins::handle<ovinta::Customer>(current) : nullptr); });
}

- (void)create:(CustomerInfo*)info
     termsOfService:(BOOL)termsOfService
    ageVerification:(BOOL)ageVerification
           callback:(CustomerCallback)block {
  callLibrary([&] {
    manager().create(object<ovinta::CustomerInfo>(info), termsOfService, ageVerification,
                     reporting(block));
  });
}

- (void)create:(CustomerInfo*)info
    customerConsent:(CustomerConsent*)customerConsent
           callback:(CustomerCallback)block {
  callLibrary([&] {
    manager().create(object<ovinta::CustomerInfo>(info),
                     object<ovinta::CustomerConsent>(customerConsent), reporting(block));
  });
}

- (void)update:(CustomerInfo*)info callback:(CustomerCallback)block {
  callLibrary([&] { manager().update(object<ovinta::CustomerInfo>(info), reporting(block)); });
}

- (void)loginWithEmailAddress:(NSString*)emailAddress
                     password:(NSString*)password
                     callback:(CustomerCallback)block {
  callLibrary([&] { manager().login(text(emailAddress), text(password), reporting(block)); });
}

- (void)loginWithTokenWithToken:(NSString*)token callback:(CustomerCallback)block {
  callLibrary([&] { manager().loginWithToken(text(token), reporting(block)); });
}

- (void)signUpWithEmailAddress:(NSString*)emailAddress
                      password:(NSString*)password
                      callback:(CustomerCallback)block {
  callLibrary([&] { manager().signUp(text(emailAddress), text(password), reporting(block)); });
}

- (void)requestNewPasswordWithEmailAddress:(NSString*)emailAddress callback:(ErrorCallback)block {
  callLibrary([&] {
    manager().requestNewPassword(text(emailAddress), callback<ovinta::ErrorCallback>(block));
  });
}

- (void)setNewPasswordWithResetPasswordToken:(NSString*)resetPasswordToken
                                    password:(NSString*)password
                                confrimation:(NSString*)confrimation
                                    callback:(CustomerCallback)block {
  callLibrary([&] {
    manager().setNewPassword(text(resetPasswordToken), text(password), text(confrimation),
                             reporting(block));
  });
}

- (void)logout {
  callLibrary([] { manager().logout(); });
}

- (void)signOut {
  callLibrary([] { manager().signOut(); });
}

@end
