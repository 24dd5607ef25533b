#pragma once

#include "cli/client/ClientOptions.h"
#include "platform/Services.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {

/// The services of this system as the options ask for them; where those say nothing, as `system`
/// does. Throws `std::runtime_error` for a data directory that cannot be written to.
platform::Services clientServices(const ClientOptions& options,
                                  platform::linux::Options system = {});

/// Configures the library, on the installed services, as the options ask for it.
void configureLibrary(const ClientOptions& options);

}  // namespace ovinta::cli
