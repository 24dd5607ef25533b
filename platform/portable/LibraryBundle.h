#pragma once

#include "platform/Bundle.h"

namespace ovinta::platform::portable {

/// The library's own bundle. Its content is compiled in, so that it cannot be lost or mismatched
/// where the library is installed.
class LibraryBundle : public Bundle {
 public:
  std::optional<std::string> infoText(std::string_view key) const override;
  std::optional<std::string> resource(std::string_view name, std::string_view type) const override;
};

}  // namespace ovinta::platform::portable
