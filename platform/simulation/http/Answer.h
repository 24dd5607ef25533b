#pragma once

#include <optional>
#include <string>
#include <utility>

#include "../../URLSession.h"

namespace ovinta::platform::simulation {

/// What a scripted service answers to a request: the arguments of a `URLSession::Completion`. A
/// plain value.
struct Answer {
  /// Handed to the completion as they are; nothing checks that they fit together.
  std::optional<std::string> data;
  std::optional<HTTPResponse> response;
  std::optional<TransportError> error;

  /// A complete answer with a JSON text, which may be empty.
  static Answer json(int statusCode, std::string text) {
    return {std::move(text), HTTPResponse{statusCode, {{"Content-Type", "application/json"}}}, {}};
  }

  /// No answer: the connection failed.
  static Answer failure(std::string localizedDescription,
                        TransportFailure failure = TransportFailure::unknown) {
    return {{}, {}, TransportError{std::move(localizedDescription), failure}};
  }

  /// The same in the words of a device that has lost its connection after the request was sent.
  static Answer lostConnection() {
    return failure("The network connection was lost.", TransportFailure::answerLost);
  }

  /// The same in the words of a device without a network: nothing was sent.
  static Answer noConnection() {
    return failure("Could not connect to the server.", TransportFailure::notSent);
  }

  /// The same answer with one more header field; for answers that have a response.
  Answer withHeader(std::string name, std::string value) && {
    if (response) response->headers.push_back({std::move(name), std::move(value)});
    return std::move(*this);
  }
};

}  // namespace ovinta::platform::simulation
