#pragma once

#include "cli/client/ClientOptions.h"
#include "platform/Services.h"

namespace ovinta::cli {

/// The services of this system as the options ask for them. Throws `std::runtime_error` for a data
/// directory that cannot be written to.
platform::Services clientServices(const ClientOptions& options);

/// Configures the library, on the installed services, as the options ask for it.
void configureLibrary(const ClientOptions& options);

}  // namespace ovinta::cli
