#pragma once

#include <string_view>

#include "platform/Bundle.h"

namespace ovinta {

/// Whether the application's provisioning profile, the resource "embedded.mobileprovision" of its
/// bundle, names the development environment for pushes. Looked up anew at every call; false when
/// there is no profile, as in published builds.
bool isDevelopmentPushEnvironment(const platform::Bundle& application);

/// Whether the text of a profile names the development environment.
bool namesDevelopmentEnvironment(std::string_view profile);

}  // namespace ovinta
