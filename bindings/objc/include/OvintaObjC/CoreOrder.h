#import <OvintaObjC/OvintaManagedObjectContext.h>

NS_ASSUME_NONNULL_BEGIN

/// The summary of an order that the order store keeps, an object of the entity "Order". States are
/// kept as raw values. Mutable; one thread at a time.
@interface CoreOrder : OvintaRecord
/// A request for all stored summaries, unsorted.
+ (OvintaFetchRequest*)fetchRequest;

/// An empty summary. It is also put into the context, if there is one; saving is left to the
/// caller.
- (instancetype)initWithEntity:(OvintaEntityDescription*)entity
    insertIntoManagedObjectContext:(nullable OvintaManagedObjectContext*)context;

/// That of the `Order`; 0 where nothing was set, as the other numbers. Each setter changes this
/// object only.
@property(nonatomic) int64_t id;
/// As in the `Order`, where it is the `siteID`.
@property(nonatomic, copy, nullable) NSString* partnerIdentifier;
@property(nonatomic) int64_t siteId;
/// The raw value of an `OrderState`.
@property(nonatomic) int64_t state;
/// The raw value of a `CustomerState`.
@property(nonatomic) int64_t customerState;
@end

NS_ASSUME_NONNULL_END
