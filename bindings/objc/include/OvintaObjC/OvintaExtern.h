#import <Foundation/Foundation.h>

/// Marks functions and constants of the twin, which have the same names in Objective-C and C++.
/// (GNUstep's `FOUNDATION_EXPORT` gives them different ones.)
#ifdef __cplusplus
#define OVINTA_EXTERN extern "C"
#else
#define OVINTA_EXTERN extern
#endif
