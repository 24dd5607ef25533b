#pragma once

#include <httplib.h>

#include <string>

#include "sandbox/Answer.h"

namespace ovinta::sandbox {

/// The whole answer to a request that the HTTP library does not get to see.
std::string wireText(const Answer& answer, bool withBody);

/// Sends the answer over the current connection, or has the reply send it once the handler is
/// through.
void deliver(Answer answer, httplib::Response& reply);

}  // namespace ovinta::sandbox
