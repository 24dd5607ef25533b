#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/URLSession.h"

namespace ovinta::cli {

/// A request and its answer, in short; free of tokens and personal fields.
struct Exchange {
  std::string method;
  /// The part of the URL below the base URL.
  std::string path;
  /// The kind of order event that was sent; empty for other requests.
  std::string eventType;
  /// What the event says, e.g. "arrived"; empty when there is nothing to say in a word.
  std::string content;
  /// 0 when the answer did not come.
  int status = 0;
  /// What went wrong on the way; empty when the answer came.
  std::string failure;
};

/// Passes requests on and tells of each once it is answered, before the sender learns of it.
class ObservedURLSession : public platform::URLSession {
 public:
  using Observer = std::function<void(const Exchange&)>;

  /// `observer` is called on the callback thread of `inner`, and must not start requests.
  ObservedURLSession(std::shared_ptr<platform::URLSession> inner, Observer observer)
      : inner_(std::move(inner)), observed_(std::make_shared<Observed>(std::move(observer))) {}

  void startDataTask(platform::URLRequest request, Completion completion) override;

  /// From its return on the observer is not called any more, whatever is still under way.
  void disconnect();

 private:
  struct Observed {
    explicit Observed(Observer whom) : observer(std::move(whom)) {}

    std::mutex mutex;
    Observer observer;
  };

  std::shared_ptr<platform::URLSession> inner_;
  std::shared_ptr<Observed> observed_;
};

}  // namespace ovinta::cli
