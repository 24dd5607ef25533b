#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

@class CoreOrder;

/// A kind of objects that the order store keeps; its one is named "Order".
@interface OvintaEntityDescription : OvintaRecord
/// The name is not checked.
- (instancetype)initWithName:(NSString*)name;
/// As it was given.
@property(nonatomic, readonly, copy) NSString* name;
@end

/// Asks for all objects of an entity, in no particular order. Immutable; may be used from any
/// thread.
@interface OvintaFetchRequest : NSObject {
 @private
  NSString* entityName_;
}
/// The name is not checked: an unknown one is an error of the context.
- (instancetype)initWithEntityName:(NSString*)entityName;
/// As it was given.
@property(nonatomic, readonly, copy) NSString* entityName;
@end

/// A transaction on the order store. Used by one thread at a time. What was done through it becomes
/// visible to others, and permanent, as a whole when it is saved; dropped unsaved, it leaves no
/// trace. Errors are of class `OvintaError`.
@interface OvintaManagedObjectContext : NSObject {
 @package
  void* store_;
}
/// A new transaction on the order store of the services that are installed; nil with the error when
/// the store cannot be opened. May be called from any thread. Blocks, as the methods do.
+ (nullable OvintaManagedObjectContext*)orderStoreContextWithError:(NSError**)error;

/// The stored objects, those inserted but unsaved not among them; nil with the error when the store
/// cannot be read.
- (nullable NSArray<CoreOrder*>*)executeFetchRequest:(OvintaFetchRequest*)request
                                               error:(NSError**)error;

/// Writes everything and ends the transaction. NO with the error: nothing was changed.
- (BOOL)save:(NSError**)error;
@end

@interface OvintaManagedObjectContext (Unavailable)
- (instancetype)init NS_UNAVAILABLE;
+ (instancetype)new NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
