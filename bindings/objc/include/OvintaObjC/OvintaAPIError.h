#import <OvintaObjC/ErrorBody.h>
#import <OvintaObjC/HTTPStatusCode.h>
#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// The service answered a request with another status than the one for success. The description is
/// made of the answer's messages, else of the status, else it is "Unknown Error". Immutable; may be
/// used from any thread.
@interface OvintaAPIError : OvintaError
/// An `HTTPStatusCode`; nil for a status that the service does not use.
@property(nonatomic, readonly, copy, nullable) NSNumber* statusCode;
/// Nil when the answer's body is none that `ErrorBody` can read.
@property(nonatomic, readonly, nullable) ErrorBody* body;
/// Messages by the name of the field that they are about; nil without a readable body.
@property(nonatomic, readonly, copy, nullable) NSDictionary<NSString*, NSArray<NSString*>*>* errors;
/// Where the application can be upgraded, if the service says so.
@property(nonatomic, readonly, copy, nullable) NSURL* appUpgradeURL;
@end

NS_ASSUME_NONNULL_END
