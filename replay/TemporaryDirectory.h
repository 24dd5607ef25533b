#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace ovinta::replay {

/// A new directory, which is removed with all that is in it when the object is destroyed. The
/// constructor throws `std::system_error` where none can be made.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "ovinta-XXXXXX").string();
    if (!::mkdtemp(name.data())) {
      throw std::system_error(errno, std::generic_category(), "no temporary directory");
    }
    path_ = name;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace ovinta::replay
