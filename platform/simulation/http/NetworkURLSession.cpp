#include "platform/simulation/http/NetworkURLSession.h"

#include <optional>

#include "platform/simulation/http/Answer.h"

namespace ovinta::platform::simulation {

void NetworkURLSession::startDataTask(URLRequest request, Completion completion) {
  if (!network_->isAvailable()) {
    return mainQueue_->async([completion = std::move(completion)] {
      completion(std::nullopt, std::nullopt, Answer::noConnection().error);
    });
  }
  base_->startDataTask(std::move(request), [network = network_, completion = std::move(completion)](
                                               auto data, auto response, auto error) {
    if (network->isAvailable()) {
      return completion(std::move(data), std::move(response), std::move(error));
    }
    completion(std::nullopt, std::nullopt, Answer::lostConnection().error);
  });
}

}  // namespace ovinta::platform::simulation
