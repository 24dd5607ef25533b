#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// What the notifications about sites show, the same for each site.
@interface NotificationInfo : OvintaRecord {
 @private
  NSDictionary* given_;
}
/// `data` is copied into the notification's user info, which holds what a JSON text can: a date
/// becomes a text such as "2021-03-04T20:30:00.000Z", data one in base 64. Other values, and
/// entries whose keys are no texts, are left out; in a list null stands in their place.
- (instancetype)initWithTitle:(NSString*)title
                      content:(NSString*)content
                         data:(nullable NSDictionary*)data;
/// Heading and text, in words for people.
@property(nonatomic, readonly, copy) NSString* title;
@property(nonatomic, readonly, copy) NSString* content;
/// As it was given.
@property(nonatomic, readonly, copy, nullable) NSDictionary* data;
@end

NS_ASSUME_NONNULL_END
