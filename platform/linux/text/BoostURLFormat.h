#pragma once

#include "platform/URL.h"

namespace ovinta::platform::linuxos {

/// Reads and builds URLs by means of Boost.URL. A relative reference is a URL too: it has no host
/// to reach, which is for the one who sends a request to find out.
class BoostURLFormat : public URLFormat {
 public:
  std::optional<URL> parse(std::string_view text) const override;
  URL withQueryItems(const URL& url, const std::vector<URLQueryItem>& items) const override;
  URL appendingPathComponent(const URL& url, std::string_view component) const override;
};

}  // namespace ovinta::platform::linuxos
