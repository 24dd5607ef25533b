#pragma once

#include <httplib.h>

#include "sandbox/Answer.h"

namespace ovinta::sandbox {

/// Sends the answer over the current connection, or has the reply send it once the handler is
/// through.
void deliver(Answer answer, httplib::Response& reply);

}  // namespace ovinta::sandbox
