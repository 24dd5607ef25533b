// The example application, as a process of its own, against the sandbox.

#include "tests/support/Command.h"
#include "tests/support/TemporaryDirectory.h"

#import "tests/bindings/objc/TwinFixture.h"

namespace objctest {
namespace {

class ExampleTest : public TwinTest {
 protected:
  ExampleTest() { setenv("XDG_DATA_HOME", directory_.path().c_str(), 1); }

 private:
  ovinta::test::TemporaryDirectory directory_;
};

TEST_F(ExampleTest, CarriesAnOrderOut) {
  const auto result = ovinta::test::runCommand({OVINTA_EXAMPLE, world.baseURL()});
  EXPECT_EQ(result.exitCode, 0);
  // Behind the library's log, which is written at once.
  EXPECT_TRUE(result.output.ends_with("customer created\n"
                                      "order created\n"
                                      "open order at Madison Square Market\n"
                                      "customer: En Route\n"
                                      "customer: Nearby\n"
                                      "customer: Arrived\n"
                                      "customer: Waiting\n"
                                      "customer: Completed\n"
                                      "rated: 5\n"
                                      "closed order at Madison Square Market\n"))
      << result.output;
}

TEST_F(ExampleTest, TellsWhyItCannot) {
  const auto result = ovinta::test::runCommand({OVINTA_EXAMPLE, "http://127.0.0.1:1"});
  EXPECT_EQ(result.exitCode, 1) << result.output;
  EXPECT_NE(result.output.find("Could not connect to the server."), std::string::npos)
      << result.output;
}

}  // namespace
}  // namespace objctest
