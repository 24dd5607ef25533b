#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The service's error answer.
@interface ErrorBody : OvintaRecord
/// Messages by the name of the field that they are about.
@property(nonatomic, readonly, copy) NSDictionary<NSString*, NSArray<NSString*>*>* errors;

/// The body that the JSON text holds; nil when it is none.
+ (nullable ErrorBody*)parse:(NSString*)text;

/// All messages of all fields, in the order of the fields' names, joined with ", ".
- (NSString*)message;
@end

NS_ASSUME_NONNULL_END
