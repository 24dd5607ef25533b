// A process that uses the library as an application does. Without arguments it ends as soon as it
// has begun; with the address of a service and a directory for its data it has an order, and with a
// third argument it tells how many threads it has beside the main one, step by step.
#include <OvintaSDK/OvintaSDK.h>
#include <unistd.h>

#include <platform/linux/Linux.h>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>

namespace {

using namespace ovinta;

void printThreads() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  std::cout << std::distance(begin(tasks), end(tasks)) - 1 << "\n";
}

void end(const ErrorPtr& error) {
  if (error) std::cerr << error->title() << ": " << error->errorDescription() << "\n";
  if (error) std::exit(EXIT_FAILURE);
  platform::linuxos::quitMainLoop();
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) _exit(0);
  const bool tells = count > 3;
  platform::install(platform::linuxos::makeServices(
      {.applicationID = "org.example.bench", .dataDirectory = arguments[2]}));
  if (tells) printThreads();
  Ovinta::configure({});
  UserDefaultsKey::apiBase.set(arguments[1]);
  if (tells) {
    printThreads();
    Ovinta::orders().fetch([](const auto&, const ErrorPtr& error) {
      printThreads();
      end(error);
    });
  } else {
    Ovinta::orders().create(42, "order-1", CustomerInfo{.name = "Alex"}, std::nullopt,
                            [](const auto&, const ErrorPtr& error) { end(error); });
  }
  platform::linuxos::runMainLoop();
  // What the library has under way is no part of what is measured.
  std::cout.flush();
  _exit(0);
}
