#pragma once

#include <filesystem>

#include "platform/Bundle.h"

namespace ovinta::platform::linuxos {

/// A directory with the info dictionary `Info.json`, one flat JSON object, and the resources as
/// files named `<name>.<type>`.
class DirectoryBundle : public Bundle {
 public:
  explicit DirectoryBundle(std::filesystem::path directory);

  std::optional<std::string> infoText(std::string_view key) const override;
  std::optional<std::string> resource(std::string_view name, std::string_view type) const override;

 private:
  std::filesystem::path directory_;
};

}  // namespace ovinta::platform::linuxos
