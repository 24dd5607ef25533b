#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/URLSession.h"

namespace ovinta::cli {

/// A session that notes what is wrong with the answers to the library's requests that the library
/// cannot read, before the sender learns of them.
std::shared_ptr<platform::URLSession> notingUnreadable(std::shared_ptr<platform::URLSession> base);

/// What is wrong, and where, with the last answer that the library reads; absent when nothing is.
/// May be called from any thread.
std::optional<std::string> lastUnreadableAnswer();

}  // namespace ovinta::cli
