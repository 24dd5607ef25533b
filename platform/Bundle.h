#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ovinta::platform {

/// A package of resources with an info dictionary: the host application's or the library's own.
/// Read anew at every call; may be used from any thread.
class Bundle {
 public:
  virtual ~Bundle() = default;

  /// The text under the key of the info dictionary; absent when there is no dictionary, no such
  /// entry, or the entry is not text.
  virtual std::optional<std::string> infoText(std::string_view key) const = 0;

  /// The whole content, as bytes, of the resource `name` with the extension `type`; absent when
  /// there is none or it cannot be read.
  virtual std::optional<std::string> resource(std::string_view name,
                                              std::string_view type) const = 0;
};

}  // namespace ovinta::platform
