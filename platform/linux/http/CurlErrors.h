#pragma once

#include <curl/curl.h>

#include "platform/URLSession.h"

namespace ovinta::platform::linuxos {

/// The error for one of libcurl's codes, in words of this library, because libcurl's own name
/// hosts, paths and files.
TransportError transportError(CURLcode code);

}  // namespace ovinta::platform::linuxos
