#include <OvintaSDK/OvintaSDK.h>

#include <platform/simulation/testing/AppTest.h>

#include "Pickup.h"

using namespace ovinta::platform::simulation;

int main() {
  AppTest test;
  test.service().expect("POST /m/v1/customer").answerData(sampleCustomer());
  test.service().expect("POST /m/v1/orders").loseConnection();

  Pickup app;
  app.order("A-1", "Alex");
  test.settle();

  // Problems stand on standard error.
  return test.finish() && !app.banner().empty() ? 0 : 1;
}
