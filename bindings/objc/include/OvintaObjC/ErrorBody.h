#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The service's error answer: {"errors": {field: [message, ...]}}.
@interface ErrorBody : OvintaRecord
/// Messages by the name of the field that they are about.
@property(nonatomic, readonly, copy) NSDictionary<NSString*, NSArray<NSString*>*>* errors;

/// The body that the JSON text holds; nil when the text is not JSON, has no object under "errors",
/// or has anything but lists of texts in it.
+ (nullable ErrorBody*)parse:(NSString*)text;

/// All messages of all fields, in the order of the fields' names, joined with ", "; empty when
/// there are none.
- (NSString*)message;
@end

NS_ASSUME_NONNULL_END
