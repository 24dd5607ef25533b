// The enumerations of both languages go into each other by their integers.

#import "bindings/objc/src/TwinClasses.h"

#define OVINTA_SAME(Name, cppCase, objCCase) \
  static_assert(static_cast<NSInteger>(ovinta::Name::cppCase) == Name##objCCase)

OVINTA_SAME(OrderState, created, Created);
OVINTA_SAME(OrderState, ready, Ready);
OVINTA_SAME(OrderState, delayed, Delayed);
OVINTA_SAME(OrderState, cancelled, Cancelled);
OVINTA_SAME(OrderState, completed, Completed);
OVINTA_SAME(OrderState, gone, Gone);

OVINTA_SAME(CustomerState, created, Created);
OVINTA_SAME(CustomerState, enRoute, EnRoute);
OVINTA_SAME(CustomerState, nearby, Nearby);
OVINTA_SAME(CustomerState, arrived, Arrived);
OVINTA_SAME(CustomerState, waiting, Waiting);
OVINTA_SAME(CustomerState, completed, Completed);

OVINTA_SAME(LocationAuthStatus, notDetermined, NotDetermined);
OVINTA_SAME(LocationAuthStatus, restricted, Restricted);
OVINTA_SAME(LocationAuthStatus, denied, Denied);
OVINTA_SAME(LocationAuthStatus, authorizedAlways, AuthorizedAlways);
OVINTA_SAME(LocationAuthStatus, authorizedWhenInUse, AuthorizedWhenInUse);

OVINTA_SAME(HTTPStatusCode, ok, Ok);
OVINTA_SAME(HTTPStatusCode, accepted, Accepted);
OVINTA_SAME(HTTPStatusCode, noContent, NoContent);
OVINTA_SAME(HTTPStatusCode, unauthorized, Unauthorized);
OVINTA_SAME(HTTPStatusCode, notFound, NotFound);
OVINTA_SAME(HTTPStatusCode, gone, Gone);
OVINTA_SAME(HTTPStatusCode, unprocessableEntity, UnprocessableEntity);
OVINTA_SAME(HTTPStatusCode, appUpgradeRequired, AppUpgradeRequired);

OVINTA_SAME(OrdersManagerErrorType, loadingCustomer, LoadingCustomer);
OVINTA_SAME(OrdersManagerErrorType, loadingApiUrl, LoadingApiUrl);
OVINTA_SAME(OrdersManagerErrorType, alreadyFetching, AlreadyFetching);

OVINTA_SAME(CustomerManagerErrorType, loadingApiUrl, LoadingApiUrl);
OVINTA_SAME(CustomerManagerErrorType, loadingCustomer, LoadingCustomer);
OVINTA_SAME(CustomerManagerErrorType, missingCustomerConsent, MissingCustomerConsent);

OVINTA_SAME(SitesManagerErrorType, loadingApiUrl, LoadingApiUrl);

OVINTA_SAME(NotifyManagerErrorType, noLocationPermission, NoLocationPermission);
OVINTA_SAME(NotifyManagerErrorType, reachedTheMaxNumberOfSites, ReachedTheMaxNumberOfSites);
