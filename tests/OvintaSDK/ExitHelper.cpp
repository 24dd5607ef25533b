// Ends while requests of the library are under way to its first argument, a base URL where nobody
// answers; keeps its data below its second. Its third is a base URL that cannot be asked, to end
// inside the callback of one more request, or empty. Its exit status is 0 if all went well.
#include <unistd.h>

#include <cstdlib>
#include <future>
#include <memory>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/Services.h"
#include "platform/linux/Linux.h"

namespace {

using ovinta::Ovinta;
using ovinta::UserDefaultsKey;

/// For requests that nobody may answer.
constexpr auto fail = [](const auto&, const auto&) { _exit(2); };

void startRequests() {
  Ovinta::orders().fetch(fail);
  Ovinta::orders().create({.siteID = 1, .partnerIdentifier = "A"}, fail);
  for (int id = 1; id <= 5; ++id) {
    Ovinta::orders().event(id, ovinta::CustomerState::arrived, fail);
  }
  Ovinta::customer().create({.name = "Ann"}, true, true, fail);
  // The store is written while the process ends.
  for (int i = 0; i < 20; ++i) Ovinta::orders().setAll(ovinta::OrderList{});
}

/// Ends the process inside the callback, on the thread that it comes on.
void exitOnceRefusedBy(const char* baseURL) {
  UserDefaultsKey::apiBase.set(baseURL);
  Ovinta::customer().create({.name = "Ann"}, true, true,
                            [](const auto&, const auto&) { std::exit(0); });
  std::promise<void>().get_future().wait();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) return 1;
  setenv("no_proxy", "*", 1);
  ovinta::platform::install(
      ovinta::platform::linuxos::makeServices({.dataDirectory = arguments[2]}));
  Ovinta::configure({{"token", "app"}});
  UserDefaultsKey::apiBase.set(arguments[1]);
  Ovinta::customer().setCurrent(
      std::make_shared<const ovinta::Customer>(ovinta::Customer{.token = "customer", .info = {}}));
  startRequests();
  if (*arguments[3]) exitOnceRefusedBy(arguments[3]);
  return 0;
}
