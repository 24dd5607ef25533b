#pragma once

#include <curl/curl.h>

#include "platform/URLSession.h"

namespace ovinta::platform::linuxos {

/// The cause in our own words: libcurl's texts name hosts, paths and files.
TransportError transportError(CURLcode code);

}  // namespace ovinta::platform::linuxos
