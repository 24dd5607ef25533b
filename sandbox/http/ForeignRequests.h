#pragma once

#include <optional>
#include <string>

#include "sandbox/http/Answer.h"
#include "sandbox/http/RequestHead.h"

namespace ovinta::sandbox {

/// What a request is answered that a page of another site has a browser send: one that names
/// another host than this machine, as after a name was pointed here, or that comes from another
/// origin than the sandbox's own. Absent for all others, those of apps among them, which name no
/// origin. Whoever is public is named as others like.
[[nodiscard]] std::optional<Answer> refuseForeign(const RequestHead& head, bool isPublic = false);

/// Whether the name, or IPv4 address, is of this machine alone.
bool isLoopbackName(const std::string& name);

}  // namespace ovinta::sandbox
