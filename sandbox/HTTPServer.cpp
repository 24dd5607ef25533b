#include "sandbox/HTTPServer.h"

#include "sandbox/Connection.h"

namespace ovinta::sandbox {

void HTTPServer::stopAll() {
  stop_.raise();
  stop();
}

bool HTTPServer::process_and_close_socket(socket_t socket) {
  Connection connection(socket, kPatience, stop_);
  bool isClosed = false;
  return process_request(connection, /*close_connection=*/true, isClosed, nullptr);
}

}  // namespace ovinta::sandbox
