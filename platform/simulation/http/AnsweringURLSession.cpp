#include "platform/simulation/http/AnsweringURLSession.h"

namespace ovinta::platform::simulation {

void AnsweringURLSession::startDataTask(URLRequest request, Completion completion) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  waiting_.push_back({std::move(request), std::move(completion)});
}

void AnsweringURLSession::setService(Service service) {
  const std::lock_guard lock(mutex_);
  service_ = std::move(service);
}

std::vector<URLRequest> AnsweringURLSession::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::size_t AnsweringURLSession::deliverAll() {
  for (std::size_t answered = 0;; ++answered) {
    Waiting next;
    Service service;
    {
      const std::lock_guard lock(mutex_);
      if (waiting_.empty()) return answered;
      next = std::move(waiting_.front());
      waiting_.pop_front();
      service = service_;
    }
    auto answer = service(next.request);
    next.completion(std::move(answer.data), std::move(answer.response), std::move(answer.error));
  }
}

}  // namespace ovinta::platform::simulation
