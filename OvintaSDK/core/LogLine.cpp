#include "OvintaSDK/core/LogLine.h"

#include "platform/Services.h"

namespace ovinta {

void logLine(std::string_view line) { platform::services().log->write(line); }

}  // namespace ovinta
