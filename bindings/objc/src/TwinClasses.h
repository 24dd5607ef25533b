#pragma once

#import <OvintaObjC/OvintaObjC.h>

#include <memory>

#include "OvintaSDK/OvintaSDK.h"

namespace twins {

/// The class whose instances stand for a C++ type.
template <class T>
struct TwinClass;

#define OVINTA_TWIN(CppType, ObjCClass)                    \
  template <>                                              \
  struct TwinClass<CppType> {                              \
    using Instance = ObjCClass;                            \
    static Class get() { return [ObjCClass class]; }       \
    static Instance* alloc() { return [ObjCClass alloc]; } \
  }

OVINTA_TWIN(ovinta::Averager, Averager);
OVINTA_TWIN(ovinta::Beacon, Beacon);
OVINTA_TWIN(ovinta::BeaconIdentifiers, BeaconIdentifiers);
OVINTA_TWIN(ovinta::BeaconRegion, BeaconRegion);
OVINTA_TWIN(ovinta::ClaimOrderInfo, ClaimOrderInfo);
OVINTA_TWIN(ovinta::CoreOrder, CoreOrder);
OVINTA_TWIN(ovinta::CreateOrderInfo, CreateOrderInfo);
OVINTA_TWIN(ovinta::Customer, Customer);
OVINTA_TWIN(ovinta::CustomerConsent, CustomerConsent);
OVINTA_TWIN(ovinta::CustomerInfo, CustomerInfo);
OVINTA_TWIN(ovinta::ErrorBody, ErrorBody);
OVINTA_TWIN(ovinta::Geofence, Geofence);
OVINTA_TWIN(ovinta::LoginInfo, LoginInfo);
OVINTA_TWIN(ovinta::NotificationInfo, NotificationInfo);
OVINTA_TWIN(ovinta::Order, Order);
OVINTA_TWIN(ovinta::OrderEvent, OrderEvent);
OVINTA_TWIN(ovinta::Pagination, Pagination);
OVINTA_TWIN(ovinta::PickupWindow, PickupWindow);
OVINTA_TWIN(ovinta::RequestPasswordReset, RequestPasswordReset);
OVINTA_TWIN(ovinta::SetNewPassword, SetNewPassword);
OVINTA_TWIN(ovinta::SignUpInfo, SignUpInfo);
OVINTA_TWIN(ovinta::Site, Site);
OVINTA_TWIN(ovinta::UpdateOrderInfo, UpdateOrderInfo);
OVINTA_TWIN(ovinta::UserDefaultsKey, UserDefaultsKey);
OVINTA_TWIN(ovinta::platform::IdentifiedBeaconRegion, OvintaBeaconRegion);
OVINTA_TWIN(ovinta::platform::CircularRegion, OvintaCircularRegion);
OVINTA_TWIN(ovinta::platform::EntityDescription, OvintaEntityDescription);
OVINTA_TWIN(ovinta::platform::Location, OvintaLocation);

#undef OVINTA_TWIN

template <class T>
concept HasTwin = requires {
  typename TwinClass<T>::Instance;
};

/// What a twin holds: the value, or the pointer that the library itself hands out.
template <class T>
struct Handle {
  using Type = T;
};
template <>
struct Handle<ovinta::Order> {
  using Type = ovinta::OrderPtr;
};
template <>
struct Handle<ovinta::Site> {
  using Type = ovinta::SitePtr;
};
template <>
struct Handle<ovinta::Customer> {
  using Type = ovinta::CustomerPtr;
};
template <>
struct Handle<ovinta::CoreOrder> {
  using Type = std::shared_ptr<ovinta::CoreOrder>;
};

}  // namespace twins
