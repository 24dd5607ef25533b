#pragma once

#include <memory>

#include "platform/DateFormatter.h"
#include "platform/Location.h"
#include "platform/Text.h"
#include "platform/URL.h"

namespace ovinta::platform::linuxos {

/// Makers of the services that work on values alone. May be called from any thread.
std::shared_ptr<Text> makeText();
std::shared_ptr<DateFormatterFactory> makeDateFormatterFactory();
std::shared_ptr<URLFormat> makeURLFormat();
std::shared_ptr<Geodesy> makeGeodesy();

}  // namespace ovinta::platform::linuxos
