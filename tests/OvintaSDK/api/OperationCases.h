#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OvintaSDK/api/APIOperation.h"

namespace ovinta::test {

/// Receives whether there is a result, and the error.
using Report = std::function<void(bool hasResult, const ErrorPtr& error)>;

/// One endpoint of the service, and what is expected of the operation that asks it.
struct OperationCase {
  std::string name;
  /// Makes the operation for a base URL; an empty report gives one without a callback.
  std::function<std::shared_ptr<APIOperation>(std::string apiURL, Report report)> make;
  std::string method;
  /// Below the base URL.
  std::string path;
  /// Whether the customer's token is sent.
  bool isAuthorized = false;
  std::optional<std::string> body = {};
  /// The title of its errors.
  std::string title;
  int success = 200;
  /// A body that it accepts as a success.
  std::string answer;
  /// Bodies of success answers that it cannot read; none for one that reads no body.
  std::vector<std::string> unreadable = {"",
                                         "no JSON",
                                         "5",
                                         "[]",
                                         "{}",
                                         R"({"data":null})",
                                         R"({"data":5})",
                                         R"({"data":[{}]})",
                                         R"({"data":{}})"};
  /// How the log line about such a body begins; empty when there is none.
  std::string logPrefix = {};
};

/// One case for each endpoint.
std::vector<OperationCase> operationCases();

}  // namespace ovinta::test
