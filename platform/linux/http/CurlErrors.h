#pragma once

#include <curl/curl.h>

#include "platform/URLSession.h"

namespace ovinta::platform::linuxos {

/// The error for one of libcurl's codes, in words of this library, because libcurl's own name
/// hosts, paths and files. `wasSent`: a connection was there, so that some of the request may have
/// left the device.
TransportError transportError(CURLcode code, bool wasSent);

}  // namespace ovinta::platform::linuxos
