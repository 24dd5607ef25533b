#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Which page of a list an answer holds.
@interface Pagination : OvintaRecord
/// The page, counted from 1, and how many there are, as the service tells.
@property(nonatomic, readonly) int64_t currentPage;
@property(nonatomic, readonly) int64_t totalPages;
@end

NS_ASSUME_NONNULL_END
