#pragma once

/// Marks what a shared build of the library exports; everything else stays hidden.
#define OVINTA_EXPORT [[gnu::visibility("default")]]
