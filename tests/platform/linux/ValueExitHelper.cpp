// Ends while threads of its own read and write values of every kind. The last of all that the end
// of a process runs does so once more, when the static objects of every library are gone. Its exit
// status is 0 if all went well.
#include <unistd.h>

#include <latch>
#include <thread>

#include "platform/JSON.h"
#include "platform/UUID.h"
#include "platform/linux/Linux.h"

namespace {

using namespace ovinta::platform;

constexpr const char* kText = R"({"a":["é",1e400,9007199254740993.0,{"b":-0.5}]})";

bool canRead() {
  const auto services = linuxos::makeValueServices();
  const auto dates =
      services.dateFormatters->makeDateFormatter({"yyyy-MM-dd'T'HH:mm:ss.SSSZ", {}, 0});
  const auto urls = services.urls;
  const auto url = urls->parse("http://h/p");
  // Both ways of a date: around ICU and through it.
  return JSONDocument::parse(kText) && !parseJSON("[01]") && !parseJSON("\"\xff\"") &&
         dates->date("2021-03-04T15:30:00.000+0000") && dates->date("2021-03-04T15:30:00.0GMT") &&
         url && urls->withQueryItems(*url, {{"q", "é"}}).text == "http://h/p?q=%C3%A9" &&
         !urls->parse("http://h:x/") && services.text->decimal("1.5") &&
         UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
}

bool canWrite() {
  const auto services = linuxos::makeValueServices();
  const auto dates = services.dateFormatters->makeDateFormatter(
      {"yyyy-MM-dd'T'HH:mm:ss.SSSZ", "japanese", 0, "ja_JP"});
  return writeJSON(*parseJSON(kText)) == R"({"a":["é",null,9007199254740993,{"b":-0.5}]})" &&
         !dates->string(Date{}).empty() && services.text->capitalized("éa b") == "Éa B" &&
         services.geodesy->distance({0, 0}, {0, 1}) > 0 && !UUID{}.text().empty();
}

void work() {
  if (!canRead() || !canWrite()) _exit(2);
}

/// Made before all other static objects, and so destroyed after them.
struct Last {
  ~Last() {
    std::thread(work).join();
    work();
  }
};
__attribute__((init_priority(101))) Last last;

}  // namespace

int main() {
  constexpr int kThreads = 3;
  std::latch begun(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    std::thread([&begun] {
      work();
      begun.count_down();
      while (true) work();
    }).detach();
  }
  begun.wait();
  return 0;
}
