#pragma once

#include <curl/curl.h>

#include "platform/URLSession.h"

#undef linux

namespace ovinta::platform::linux {

/// The cause in our own words: libcurl's texts name hosts, paths and files.
TransportError transportError(CURLcode code);

}  // namespace ovinta::platform::linux
