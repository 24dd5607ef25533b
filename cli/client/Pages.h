#pragma once

#include <functional>
#include <string>

#include "cli/client/Client.h"

namespace ovinta::cli {

/// Like `Client::await`, for an operation that asks for page after page: shows how many have come.
inline Outcome awaitPages(Client& client, const std::function<void(Client::Report)>& start) {
  client.onAnswer([&client, pages = 0]() mutable {
    client.showProgress("Pages so far: " + std::to_string(++pages));
  });
  Outcome outcome = client.await(start);
  client.onAnswer({});
  return outcome;
}

}  // namespace ovinta::cli
