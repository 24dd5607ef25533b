#pragma once

#include "platform/Services.h"

namespace ovinta::platform {

/// The services of the platform library that the program is linked with, which defines this
/// function: those in force where the application installs none. Called at most once.
Services makeDefaultServices();

}  // namespace ovinta::platform
