// fuzz_replay TARGET PATH: runs a file, or all files of a directory, through the target, without a
// fuzzer. The name of each file stands before what it leads to.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "fuzz/Target.h"

namespace {

void replay(const ovinta::fuzz::Target& target, const std::filesystem::path& file) {
  std::cout << file.filename().string() << std::endl;
  std::ifstream stream(file, std::ios::binary);
  ovinta::fuzz::require(stream.is_open(), "the file can be read");
  target.run(std::string(std::istreambuf_iterator<char>(stream), {}));
}

}  // namespace

int main(int count, char** arguments) {
  const std::string name = count == 3 ? arguments[1] : "";
  const auto target = std::ranges::find(ovinta::fuzz::targets(), name, &ovinta::fuzz::Target::name);
  if (target == ovinta::fuzz::targets().end()) {
    std::cerr << "fuzz_replay TARGET PATH\n";
    return 2;
  }
  const std::filesystem::path path = arguments[2];
  if (!std::filesystem::is_directory(path)) {
    replay(**target, path);
    return 0;
  }
  ovinta::fuzz::require(!std::filesystem::is_empty(path), "the directory holds inputs");
  for (const auto& entry : std::filesystem::directory_iterator(path))
    replay(**target, entry.path());
  return 0;
}
