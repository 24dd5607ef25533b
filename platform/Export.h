#pragma once

/// Marks the types and functions that a shared build of the library exports; all others stay
/// hidden.
#define OVINTA_EXPORT [[gnu::visibility("default")]]
