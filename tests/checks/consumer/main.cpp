#include <cstdio>

#include "platform/Services.h"

// `services()` comes from the library, its types from the headers.
int main() { std::puts(ovinta::platform::services().clock ? "services" : "no services"); }
