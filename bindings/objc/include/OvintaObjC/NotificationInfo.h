#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What the notifications about sites show.
@interface NotificationInfo : OvintaRecord
/// `data` is copied into the notification's user info. It may hold what a JSON text can; other
/// values, and entries whose keys are no texts, are left out.
- (instancetype)initWithTitle:(NSString*)title
                      content:(NSString*)content
                         data:(nullable NSDictionary*)data;
@property(nonatomic, readonly, copy) NSString* title;
@property(nonatomic, readonly, copy) NSString* content;
@property(nonatomic, readonly, copy, nullable) NSDictionary* data;
@end

NS_ASSUME_NONNULL_END
