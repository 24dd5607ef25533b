#include "cli/client/RecordFile.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

std::string readAll(const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::ifstream stream(file, std::ios::binary);
  if (!stream || std::filesystem::is_directory(file)) {
    throw std::runtime_error("cannot read " + file);
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

platform::Dictionary readRecordFile(const std::string& file, const std::string& what) {
  const auto value = platform::parseJSON(readAll(file));
  if (!value) throw std::runtime_error("the " + what + " is not JSON");
  const auto* record = value->as<platform::Dictionary>();
  if (!record) throw std::runtime_error("the " + what + " is no JSON object");
  return *record;
}

}  // namespace ovinta::cli
