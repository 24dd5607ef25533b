#include "platform/portable/JSONParsers.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace ovinta::platform::portable {

namespace {

using simdjson::dom::parser;

constexpr std::size_t kInitialCapacity = 1024;
/// The most working memory, by the size of a text, that a parser keeps between two texts.
constexpr std::size_t kLargestKept = std::size_t{1} << 20;

/// Gives the parser working memory of the initial size. When there is none the next text fails.
void reserve(parser& made) {
  [[maybe_unused]] const simdjson::error_code ignored = made.allocate(kInitialCapacity);
}

/// The parsers that are not in use. simdjson makes a new one by static objects of its own, which
/// the end of the process destroys while threads of the application may be parsing still: from then
/// on only those that exist are lent.
class Pool {
 public:
  parser* take() {
    if (parser* const free = takeFree()) return free;
    {
      const std::lock_guard lock(making_);
      if (!hasEnded_) return make();
    }
    // The parsers are all lent out; each comes back as soon as its text is read.
    for (;; std::this_thread::yield()) {
      if (parser* const free = takeFree()) return free;
    }
  }

  void give(parser* used) {
    if (used->capacity() > kLargestKept || used->max_depth() > simdjson::DEFAULT_MAX_DEPTH) {
      reserve(*used);
    }
    for (auto& place : free_) {
      parser* none = nullptr;
      if (place.compare_exchange_strong(none, used)) return;
    }
    delete used;
  }

  /// Makes the first parser, while the static objects are sure to exist.
  void begin() { give(make()); }

  /// Has no more parsers made.
  void end() {
    const std::lock_guard lock(making_);
    hasEnded_ = true;
  }

 private:
  static parser* make() {
    auto* const made = new parser;
    reserve(*made);
    return made;
  }

  parser* takeFree() {
    for (auto& place : free_) {
      if (!place.load(std::memory_order_relaxed)) continue;
      if (parser* const free = place.exchange(nullptr)) return free;
    }
    return nullptr;
  }

  std::array<std::atomic<parser*>, 8> free_{};
  std::mutex making_;
  bool hasEnded_ = false;
};

Pool& pool() {
  static auto* const instance = new Pool;
  return *instance;
}

/// Registers the end of the pool. Exit handlers run in the reverse order of registration, so that
/// the pool hears of the end before simdjson's objects, which `begin` has made, are destroyed.
[[maybe_unused]] const bool kIsRegistered = [] {
  pool().begin();
  return std::atexit([] { pool().end(); }) == 0;
}();

}  // namespace

JSONParserLease::JSONParserLease() : parser_(pool().take()) {}

JSONParserLease::~JSONParserLease() { pool().give(parser_); }

}  // namespace ovinta::platform::portable
