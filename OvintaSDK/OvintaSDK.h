#pragma once

// The whole public interface of the library.

#include "../platform/JSONText.h"
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
