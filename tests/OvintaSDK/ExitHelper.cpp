// Ends in the manner of its first argument while requests of the library are under way to the port
// of its second one, where nobody answers; keeps its data below its third. Its exit status is 0 if
// all went well.
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/Services.h"
#include "platform/linux/Linux.h"

namespace {

using ovinta::Ovinta;
using ovinta::UserDefaultsKey;

/// For requests that nobody may answer.
void fail() { _exit(2); }

void useServiceAt(const std::string& port) {
  UserDefaultsKey::apiBase.set("http://127.0.0.1:" + port + "/");
}

void startRequests() {
  Ovinta::orders().fetch([](const auto&, const auto&) { fail(); });
  Ovinta::orders().create({.siteID = 1, .partnerIdentifier = "A"},
                          [](const auto&, const auto&) { fail(); });
  for (int id = 1; id <= 5; ++id) {
    Ovinta::orders().event(id, ovinta::CustomerState::arrived,
                           [](const auto&, const auto&) { fail(); });
  }
  Ovinta::customer().create({.name = "Ann"}, true, true, [](const auto&, const auto&) { fail(); });
}

void fromMain() { startRequests(); }

/// The store is written while the process ends.
void whileSyncing() {
  startRequests();
  for (int i = 0; i < 20; ++i) Ovinta::orders().setAll(ovinta::OrderList{});
}

/// The base URL has no host, so the callback comes on a thread of the operation queue.
void fromOperation() {
  startRequests();
  UserDefaultsKey::apiBase.set("not a URL");
  Ovinta::customer().create({.name = "Ann"}, true, true,
                            [](const auto&, const auto&) { std::exit(0); });
  std::promise<void>().get_future().wait();
}

/// Nobody listens at port 1, so the callback comes on the thread of the URL session.
void fromCallback() {
  startRequests();
  useServiceAt("1");
  Ovinta::customer().create({.name = "Ann"}, true, true,
                            [](const auto&, const auto&) { std::exit(0); });
  std::promise<void>().get_future().wait();
}

}  // namespace

int main(int count, char** arguments) {
  const std::map<std::string, void (*)()> manners{{"fromMain", &fromMain},
                                                  {"whileSyncing", &whileSyncing},
                                                  {"fromOperation", &fromOperation},
                                                  {"fromCallback", &fromCallback}};
  if (count != 4) return 1;
  setenv("no_proxy", "*", 1);
  ovinta::platform::install(ovinta::platform::linux::makeServices({.dataDirectory = arguments[3]}));
  Ovinta::configure({{"token", "app"}});
  useServiceAt(arguments[2]);
  Ovinta::customer().setCurrent(
      std::make_shared<const ovinta::Customer>(ovinta::Customer{.token = "customer", .info = {}}));
  manners.at(arguments[1])();
  return 0;
}
