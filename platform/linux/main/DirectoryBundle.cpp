#include "platform/linux/main/DirectoryBundle.h"

#include <fstream>
#include <sstream>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::platform::linuxos {

DirectoryBundle::DirectoryBundle(std::filesystem::path directory)
    : directory_(std::move(directory)) {}

std::optional<std::string> DirectoryBundle::infoText(std::string_view key) const {
  const auto text = resource("Info", "json");
  const auto info = text ? parseJSON(*text) : std::nullopt;
  const auto* dictionary = info ? info->as<Dictionary>() : nullptr;
  const auto* entry = dictionary ? find<std::string>(*dictionary, key) : nullptr;
  if (!entry) return std::nullopt;
  return *entry;
}

std::optional<std::string> DirectoryBundle::resource(std::string_view name,
                                                     std::string_view type) const {
  if (directory_.empty()) return std::nullopt;
  const auto path = directory_ / std::string(name).append(".").append(type);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  if (file.peek() != std::ifstream::traits_type::eof()) content << file.rdbuf();
  if (!file.is_open() || file.bad() || content.fail()) return std::nullopt;
  return std::move(content).str();
}

}  // namespace ovinta::platform::linuxos
