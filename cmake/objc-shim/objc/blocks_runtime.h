// GNUstep's headers ask for this one, which comes with another Objective-C runtime than GCC's; the
// blocks runtime beside GCC's has its own.
#include <Block.h>
