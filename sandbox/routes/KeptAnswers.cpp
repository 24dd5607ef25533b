#include "sandbox/routes/KeptAnswers.h"

#include <utility>

namespace ovinta::sandbox {
namespace {

/// What an entry takes beside its texts, in bytes, roughly.
constexpr std::size_t kEntrySize = 512;
/// The same of one header field.
constexpr std::size_t kFieldSize = 96;

std::size_t sizeOf(const KeptAnswers::Request& request) {
  return kEntrySize + 2 * request.key.size() + request.content.size();
}

std::size_t sizeOf(const Answer& answer) {
  std::size_t size = answer.contentType.size() + answer.body.size();
  for (const auto& [name, value] : answer.headers) size += kFieldSize + name.size() + value.size();
  return size;
}

}  // namespace

Answer KeptAnswers::answerOnce(Request request, const std::function<Answer()>& answer) {
  std::size_t size = sizeOf(request);
  std::packaged_task<Answer()> first([&] {
    Answer result = answer();
    size += sizeOf(result);
    return result;
  });
  const auto entry = std::make_shared<Entry>(Entry{std::move(request), first.get_future().share()});
  const auto known = enter(entry);
  if (known == entry) {
    first();
    try {
      Answer result = entry->answer.get();
      keep(entry, size);
      return result;
    } catch (...) {
      forget(entry);
      throw;
    }
  }
  if (known->request.content != entry->request.content) {
    return errorAnswer(422, "idempotency_key", "was used for another request");
  }
  Answer repeated = known->answer.get();
  repeated.isRepetition = true;
  return repeated;
}

std::shared_ptr<KeptAnswers::Entry> KeptAnswers::enter(const std::shared_ptr<Entry>& entry) {
  const std::lock_guard lock(mutex_);
  const auto found = byKey_.find(entry->request.key);
  if (found != byKey_.end()) return *found->second;
  byKey_.emplace(entry->request.key, entries_.insert(entries_.end(), entry));
  return entry;
}

void KeptAnswers::keep(const std::shared_ptr<Entry>& entry, std::size_t size) {
  const std::lock_guard lock(mutex_);
  const auto known = byKey_.find(entry->request.key);
  if (known == byKey_.end() || *known->second != entry) return;
  entry->size = size;
  bytes_ += size;
  dropOldest();
}

void KeptAnswers::forget(const std::shared_ptr<Entry>& entry) {
  const std::lock_guard lock(mutex_);
  const auto known = byKey_.find(entry->request.key);
  if (known == byKey_.end() || *known->second != entry) return;
  entries_.erase(known->second);
  byKey_.erase(known);
}

void KeptAnswers::dropOldest() {
  for (auto oldest = entries_.begin(); bytes_ > mostBytes_ && oldest != entries_.end();) {
    const auto entry = *oldest;
    // One that is still being answered takes no room yet.
    if (entry->size == 0) {
      ++oldest;
      continue;
    }
    bytes_ -= entry->size;
    byKey_.erase(entry->request.key);
    oldest = entries_.erase(oldest);
  }
}

void KeptAnswers::clear() {
  const std::lock_guard lock(mutex_);
  entries_.clear();
  byKey_.clear();
  bytes_ = 0;
}

}  // namespace ovinta::sandbox
