#pragma once

#include <cstddef>
#include <functional>
#include <future>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {

/// The first answers to requests that carry an idempotency key, for when the client asks again
/// because the answer has not reached it. In memory only, and bounded: the oldest go first. May be
/// used from any thread.
class KeptAnswers {
 public:
  /// How many bytes of keys, requests and answers with their headers are kept.
  static constexpr std::size_t kMostBytes = std::size_t{16} << 20;

  explicit KeptAnswers(std::size_t mostBytes = kMostBytes) : mostBytes_(mostBytes) {}

  struct Request {
    /// The client's key, together with whom it is the key of: others may use the same.
    std::string key;
    /// All that makes it another request with the same key.
    std::string content;
  };

  /// What `answer` gives, which is kept; or what was kept of the first request with that key,
  /// marked as a repetition. A repetition that comes while the first is being answered waits for
  /// it. Refused when the key was used for another content. What `answer` throws goes through, also
  /// to those that wait for it, and is not kept.
  Answer answerOnce(Request request, const std::function<Answer()>& answer);

  /// Forgets all keys.
  void clear();

 private:
  struct Entry {
    Request request;
    std::shared_future<Answer> answer;
    /// In bytes; 0 while the first request is being answered.
    std::size_t size = 0;
  };
  using Entries = std::list<std::shared_ptr<Entry>>;

  /// The entry that has the key already, or else the one given, which has it from then on.
  std::shared_ptr<Entry> enter(const std::shared_ptr<Entry>& entry);
  /// Keeps what the entry was answered, which is that many bytes; unless they were all forgotten
  /// meanwhile.
  void keep(const std::shared_ptr<Entry>& entry, std::size_t size);
  /// Takes out an entry whose request has failed; no effect where they were all forgotten
  /// meanwhile.
  void forget(const std::shared_ptr<Entry>& entry);
  void dropOldest();

  const std::size_t mostBytes_;
  std::mutex mutex_;
  /// The oldest first.
  Entries entries_;
  std::unordered_map<std::string, Entries::iterator> byKey_;
  /// The sizes of all entries together.
  std::size_t bytes_ = 0;
};

}  // namespace ovinta::sandbox
