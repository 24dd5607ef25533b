#pragma once

#include <memory>

#include "cli/client/ClientOptions.h"
#include "platform/Services.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {

/// What the command is to the services of this system.
inline constexpr const char* kApplicationID = "ovinta";

/// The services of this system as the options ask for them; where those say nothing, as `system`
/// does. Throws `std::runtime_error` for a data directory that cannot be written to.
platform::Services clientServices(const ClientOptions& options,
                                  platform::linuxos::Options system = {});

/// The log that the options ask for: standard error, with nothing that a terminal would act on, or
/// nowhere.
std::shared_ptr<platform::Log> logFor(const ClientOptions& options);

/// Makes the services that work on values alone.
platform::Services valueServices();

/// Throws `std::runtime_error` when settings of the installed services could not be read or
/// written: the next call would not find what this one leaves.
void refuseUnkept();

/// Configures the library, on the installed services, as the options ask for it. Throws as
/// `refuseUnkept` does.
void configureLibrary(const ClientOptions& options);

}  // namespace ovinta::cli
