#pragma once

#include <string>

#include "tests/support/Steps.h"

// The words of the library that more than one test expects. Tests name them by their meaning.
namespace ovinta::test {

/// Lines of the log.
struct Line {
  static constexpr const char* gettingOrders = "Getting Orders";
  static constexpr const char* noOrders = "Got an error getting orders";
  static constexpr const char* synced = "Finished syncing orders";
  static constexpr const char* lookingUp = "Getting order using redemption code";
  static constexpr const char* notLookedUp = "Got an error getting order with redemption code";
  static constexpr const char* creating = "Creating order for existing customer";
  static constexpr const char* eventAccepted = "Successfully created order event";
  static constexpr const char* eventRefused = "Got an error creating order event";
  static constexpr const char* tracking = "Starting LocationUpdater";
  static constexpr const char* notTracking = "Inadequate location authorization to continue";
  static constexpr const char* sendingLocation = "sending location update";
  static constexpr const char* gettingSites = "Getting All Sites";
  static constexpr const char* noSites = "Got an error getting sites";

  static std::string claiming(const std::string& code) {
    return "Claiming order using redemption code " + code;
  }
  static std::string notClaimed(const std::string& code) {
    return "Got an error claiming order with redemption code " + code;
  }
  static std::string renewingPushToken(const std::string& code) {
    return "Updating order's push token using redemption code " + code;
  }
};

/// Titles of errors.
struct Title {
  // Of those by which a manager refuses a call.
  static constexpr const char* customers = "Error with Customer Manager";
  static constexpr const char* notify = "Error with Notify Manager";
  static constexpr const char* orders = "Error with Orders Manager";
  static constexpr const char* sites = "Error with Sites Manager";

  // Of those of an operation.
  static constexpr const char* createCustomer = "Error Creating Profile";
  static constexpr const char* updateCustomer = "Error Updating Profile";
  static constexpr const char* getCustomer = "Error Getting Customer";
  static constexpr const char* signUp = "Error Signing Up";
  static constexpr const char* signIn = "Error Signing In";
  static constexpr const char* resetPassword = "Error Request New Password";
  static constexpr const char* getOrders = "Error Getting Orders";
  static constexpr const char* createOrder = "Error Creating Order";
  static constexpr const char* createEvent = "Error Creating Order Event";
  static constexpr const char* lookUp = "Error Finding Redeem Code";
  static constexpr const char* claimOrder = "Error Claiming Order";
  static constexpr const char* getSites = "Error Getting Sites";
  static constexpr const char* getSitesForRegion = "Error Getting Sites For A Region";
  static constexpr const char* getConfiguration = "Error Getting Configuration";
};

/// What errors say. That of a refusal is a line of the log, too.
struct Message {
  static constexpr const char* noURL = "Could not load API url";
  static constexpr const char* noCustomer = "Could not load customer";
  static constexpr const char* noConsent = "Missing customer consent";
  static constexpr const char* alreadyFetching = "Already fetching orders";
  static constexpr const char* tooManySites = "Site limit exceeded";
  static constexpr const char* noPermission = "Location permission is missing";

  static constexpr const char* invalidURL = "invalid URL";
  static constexpr const char* unreadable = "invalid response";
  static constexpr const char* notAuthorized = "Not authorized";
  static constexpr const char* notFound = "Not found";
  static constexpr const char* unprocessable = "Error processing input";
  static constexpr const char* unknown = "Unknown Error";
};

/// The manager with errors of that title refuses a call.
inline Steps refused(const char* title, const char* message) {
  return {logged(message), told(theError(title, message))};
}

}  // namespace ovinta::test
