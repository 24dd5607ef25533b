#import <OvintaObjC/Customer.h>
#import <OvintaObjC/CustomerConsent.h>
#import <OvintaObjC/CustomerManagerError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the customer or the error, exactly one of them not nil.
typedef void (^CustomerCallback)(Customer* _Nullable customer, OvintaError* _Nullable error);

/// Receives the error, or nil after a success.
typedef void (^ErrorCallback)(OvintaError* _Nullable error);

/// Owns the one customer of the device; reached as `Ovinta.customer`, for which every instance
/// stands. The customer survives a restart of the application. All methods may be called from any
/// thread and return at once; a callback, which may be nil, is called at most once: on the callback
/// thread of the URL session when the service was asked, on a thread of the API queue when the
/// stored base URL is no URL, inside the call when the request was refused before. It is left out
/// only where a URL session of the application's own, installed in C++, completes a success without
/// data. "The service's errors" are those of a request (see `OvintaError`). Of two requests that
/// overlap, the one that is answered last decides who the customer is.
@interface CustomerManager : NSObject
/// The signed-in customer, or nil. Setting it changes the copy in memory only.
@property(nonatomic, retain, nullable) Customer* current;

/// Creates an anonymous customer, which becomes `current` and is kept in the settings store. On
/// failure nothing changes. The service judges the consent. Errors: `CustomerManagerError` of type
/// `LoadingApiUrl`; the service's.
- (void)create:(CustomerInfo*)info
     termsOfService:(BOOL)termsOfService
    ageVerification:(BOOL)ageVerification
           callback:(nullable CustomerCallback)callback;
- (void)create:(CustomerInfo*)info
    customerConsent:(CustomerConsent*)customerConsent
           callback:(nullable CustomerCallback)callback;

/// Changes the current customer's details. Errors: `CustomerManagerError` of type `LoadingCustomer`
/// or `LoadingApiUrl`; the service's. A customer that comes back becomes `current` and is kept,
/// here as in all that follow; on failure nothing changes.
- (void)update:(CustomerInfo*)info callback:(nullable CustomerCallback)callback;

/// Logs in. Errors: `CustomerManagerError` of type `LoadingApiUrl`; the service's.
- (void)loginWithEmailAddress:(NSString*)emailAddress
                     password:(NSString*)password
                     callback:(nullable CustomerCallback)callback;
/// Logs in with the `Customer` token of an earlier session; otherwise the same.
- (void)loginWithTokenWithToken:(NSString*)token callback:(nullable CustomerCallback)callback;

/// Gives the current customer's account an e-mail address and a password. Errors as `update`.
- (void)signUpWithEmailAddress:(NSString*)emailAddress
                      password:(NSString*)password
                      callback:(nullable CustomerCallback)callback;

/// Has a message with a reset token sent to the address. Changes nothing here. Errors as for the
/// login.
- (void)requestNewPasswordWithEmailAddress:(NSString*)emailAddress
                                  callback:(nullable ErrorCallback)callback;

/// Sets a new password with a reset token, and logs in. Password and confirmation are sent as
/// given: the service compares them. Errors as for the login.
- (void)setNewPasswordWithResetPasswordToken:(NSString*)resetPasswordToken
                                    password:(NSString*)password
                                confrimation:(NSString*)confrimation
                                    callback:(nullable CustomerCallback)callback;

/// Forgets the customer, and wipes the token from the settings store; the service is not told.
/// Name, vehicle, e-mail address and phone stay there, to prefill a later login.
- (void)logout;
/// The same as `logout`.
- (void)signOut;
@end

NS_ASSUME_NONNULL_END
