#include "platform/simulation/http/HoldingURLSession.h"

#include <algorithm>

namespace ovinta::platform::simulation {

void HoldingURLSession::startDataTask(URLRequest request, Completion completion) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(std::move(request));
  completions_.push_back(std::move(completion));
}

std::vector<URLRequest> HoldingURLSession::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::size_t HoldingURLSession::waitingCount() const {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(std::ranges::count_if(
      completions_, [](const Completion& completion) { return completion != nullptr; }));
}

bool HoldingURLSession::answer(std::size_t index, Answer answer) {
  Completion completion;
  {
    const std::lock_guard lock(mutex_);
    if (index >= completions_.size()) return false;
    completion.swap(completions_[index]);
  }
  if (!completion) return false;
  completion(std::move(answer.data), std::move(answer.response), std::move(answer.error));
  return true;
}

}  // namespace ovinta::platform::simulation
