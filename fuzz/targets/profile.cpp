#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "OvintaSDK/core/DevelopmentPush.h"
#include "fuzz/Target.h"
#include "platform/JSON.h"
#include "platform/linux/main/DirectoryBundle.h"

namespace ovinta::fuzz {
namespace {

/// A directory of this process alone, which goes with it.
class Directory {
 public:
  Directory() {
    std::string name = std::filesystem::temp_directory_path() / "ovinta-fuzz-XXXXXX";
    require(mkdtemp(name.data()) != nullptr, "there is a place for files");
    path = name;
  }
  ~Directory() { std::filesystem::remove_all(path); }

  std::filesystem::path path;
};

void run(std::string_view input) {
  static const Directory directory;
  std::ofstream(directory.path / "Info.json", std::ios::binary) << input;
  const platform::linuxos::DirectoryBundle bundle(directory.path);
  require(bundle.resource("Info", "json") == input, "a resource is the whole file");

  const auto value = platform::parseJSON(input);
  const auto* info = value ? value->as<platform::Dictionary>() : nullptr;
  for (const char* key : {"CFBundleShortVersionString", "", "a"}) {
    const auto* text = info ? platform::find<std::string>(*info, key) : nullptr;
    require(bundle.infoText(key) == (text ? std::optional(*text) : std::nullopt),
            "an entry of the info dictionary is its text");
  }

  require(!namesDevelopmentEnvironment(input) ||
              input.find("<string>development</string>",
                         input.find("<key>aps-environment</key>")) != std::string_view::npos,
          "only a profile that says so is one for development");
}

const Target kTarget("profile", run);

}  // namespace
}  // namespace ovinta::fuzz
