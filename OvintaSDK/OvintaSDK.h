#pragma once

// The whole public interface of the library.

#include "OvintaSDK/api/OvintaAPIError.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/model/CoreOrder.h"
#include "OvintaSDK/model/Order.h"
#include "OvintaSDK/model/OrderResponse.h"
#include "OvintaSDK/model/RecordJSON.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "platform/JSONText.h"
#include "platform/Services.h"
