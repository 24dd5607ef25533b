// The one place where the managers' errors are made from their template.
#include "OvintaSDK/customer/CustomerManagerError.h"
#include "OvintaSDK/orders/OrdersManagerError.h"
#include "OvintaSDK/sites/NotifyManagerError.h"
#include "OvintaSDK/sites/SitesManagerError.h"

namespace ovinta {

template class ManagerError<CustomerManagerErrorType>;
template class ManagerError<NotifyManagerErrorType>;
template class ManagerError<OrdersManagerErrorType>;
template class ManagerError<SitesManagerErrorType>;

}  // namespace ovinta
