#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "AppTest.h"

namespace ovinta::platform::simulation {

/// The fixture of an application's cases with GoogleTest, which the application brings itself: each
/// case is an `AppTest`, and each problem a failure that names the place of the expectation.
class AppTestCase : public ::testing::Test, public AppTest {
 protected:
  /// A case that begins as the options say; who is told of problems is settled.
  explicit AppTestCase(AppTestOptions options = {}) : AppTest(failing(std::move(options))) {}

 private:
  static AppTestOptions failing(AppTestOptions options) {
    options.onProblem = [](const Problem& problem) {
      const auto [file, line] = problem.place;
      if (file.empty()) {
        ADD_FAILURE() << problem.text;
      } else {
        ADD_FAILURE_AT(std::string(file).c_str(), line) << problem.text;
      }
    };
    return options;
  }
};

}  // namespace ovinta::platform::simulation
