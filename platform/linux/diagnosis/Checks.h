#pragma once

#include "platform/linux/diagnosis/Check.h"
#include "platform/linux/diagnosis/Surroundings.h"

namespace ovinta::platform::linuxos {

// Each function begins a check, which is ended later or inside the call. The surroundings outlive
// the check.

void checkSystemBus(const Surroundings& around, Check& check);
void checkSessionBus(const Surroundings& around, Check& check);
void checkPosition(const Surroundings& around, Check& check);
void checkBluetooth(const Surroundings& around, Check& check);
void checkNotifications(const Surroundings& around, Check& check);
void checkNotifyAgent(const Surroundings& around, Check& check);
void checkBattery(const Surroundings& around, Check& check);
void checkDataDirectory(const Surroundings& around, Check& check);

}  // namespace ovinta::platform::linuxos
