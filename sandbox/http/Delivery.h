#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace httplib {
struct Response;
}

namespace ovinta::sandbox {

struct Answer;
class Connection;

/// How an answer goes over the wire when it does not go as it should.
struct Delivery {
  enum class End { orderly, reset, silence };

  /// The body's length as the head tells it, not 0; the true one when absent.
  std::optional<std::size_t> announced = {};
  /// The bytes to send, of the body repeated as often as it takes; the body once when absent.
  std::optional<std::size_t> sent = {};
  End end = End::orderly;
};

/// The whole answer to a request that the HTTP library does not get to see.
std::string wireText(const Answer& answer, bool withBody);

/// Sends the answer over the connection, or has the reply send it once the handler is through.
void deliver(Answer answer, Connection& connection, httplib::Response& reply);

}  // namespace ovinta::sandbox
