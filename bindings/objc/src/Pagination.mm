#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Pagination;

@implementation Pagination
OVINTA_GETTER(int64_t, currentPage)
OVINTA_GETTER(int64_t, totalPages)
@end
