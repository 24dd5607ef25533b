#pragma once

// The whole public interface of the library. What holds throughout: texts are UTF-8, instants are
// `platform::Date`, an absent value is an empty `std::optional` or a null pointer. "A plain value"
// is a record that follows the rule of the standard containers: any number of threads may read it
// as long as none changes it. Nothing is thrown at the application.

#include "../platform/JSONText.h"
#include "../platform/NetworkMonitor.h"
#include "../platform/Outbox.h"
#include "../platform/Services.h"
#include "OvintaSDK/api/OvintaAPIError.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/model/CoreOrder.h"
#include "OvintaSDK/model/Order.h"
#include "OvintaSDK/model/OrderResponse.h"
#include "OvintaSDK/model/RecordJSON.h"
#include "OvintaSDK/orders/OrdersManager.h"
