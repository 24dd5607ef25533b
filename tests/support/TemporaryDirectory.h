#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace ovinta::test {

/// A new directory that is removed with all its content.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    auto name = (std::filesystem::temp_directory_path() / "ovinta-XXXXXX").string();
    if (!mkdtemp(name.data())) std::abort();
    path_ = name;
  }
  ~TemporaryDirectory() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace ovinta::test
