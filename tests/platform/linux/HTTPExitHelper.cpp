// Ends in the manner of its first argument while requests to the port of its second one, where
// nobody answers, are under way. Its exit status is 0 if all went well.
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <map>
#include <string>

#include "platform/linux/CurlURLSession.h"

namespace {

using ovinta::platform::linux::CurlURLSession;

std::atomic<bool> threadsAreStopped = false;
CurlURLSession* session = nullptr;
std::string port;

void startUnanswered() {
  for (const char* scheme : {"http", "https", "https", "http"}) {
    session->startDataTask({.url = {scheme + std::string("://127.0.0.1:") + port + "/"}},
                           [](auto, auto, auto) { _exit(2); });
  }
}

void startRefused(std::function<void()> then) {
  session->startDataTask({.url = {"none:"}}, [then](auto, auto, auto) { then(); });
}

void exitFromMain() { startUnanswered(); }

void exitFromCompletion() {
  startUnanswered();
  startRefused([] { std::exit(0); });
  std::promise<void>().get_future().wait();
}

void completeForEver() {
  if (threadsAreStopped) _exit(3);
  startRefused(&completeForEver);
}

void exitDuringCompletions() {
  startUnanswered();
  completeForEver();
}

void exitDuringLongCompletion() {
  std::promise<void> begun;
  startUnanswered();
  startRefused([&begun] {
    begun.set_value();
    std::promise<void>().get_future().wait();
  });
  begun.get_future().wait();
}

}  // namespace

int main(int count, char** arguments) {
  const std::map<std::string, void (*)()> manners{
      {"fromMain", &exitFromMain},
      {"fromCompletion", &exitFromCompletion},
      {"duringCompletions", &exitDuringCompletions},
      {"duringLongCompletion", &exitDuringLongCompletion}};
  if (count != 3) return 1;
  port = arguments[2];
  // Added before the session's own exit handler, and so called after it.
  std::atexit([] { threadsAreStopped = true; });
  session = new CurlURLSession;
  manners.at(arguments[1])();
  return 0;
}
