#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/storage/SQLiteSettingsStore.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform {
namespace {

using Make = std::shared_ptr<SettingsStore> (*)(const std::filesystem::path& directory);

std::shared_ptr<SettingsStore> inMemory(const std::filesystem::path& /*directory*/) {
  return portable::makeInMemorySettingsStore();
}
std::shared_ptr<SettingsStore> inAFile(const std::filesystem::path& directory) {
  return std::make_shared<linuxos::SQLiteSettingsStore>(
      directory / "Settings.sqlite", std::make_shared<simulation::RecordingLog>());
}
std::shared_ptr<SettingsStore> withoutAFile(const std::filesystem::path& /*directory*/) {
  return std::make_shared<linuxos::SQLiteSettingsStore>(
      std::nullopt, std::make_shared<simulation::RecordingLog>());
}

/// What every settings store promises.
class SettingsStoreTest : public testing::TestWithParam<Make> {
 protected:
  test::TemporaryDirectory directory_;
  std::shared_ptr<SettingsStore> store_ = GetParam()(directory_.path());
};

TEST_P(SettingsStoreTest, StoredTextsHideDefaultsUntilTheyAreRemoved) {
  EXPECT_EQ(store_->string("key"), std::nullopt);
  store_->remove("key");
  store_->registerDefault("key", "default");
  store_->registerDefault("key", "later default");
  EXPECT_EQ(store_->string("key"), "later default");
  const std::string odd("a'\"\n\0\xC3\xA9", 7);
  for (const auto& text : {std::string("stored"), std::string(), odd}) {
    store_->set("key", text);
    store_->set("other", "x");
    EXPECT_EQ(store_->string("key"), text);
  }
  store_->registerDefault("key", "latest default");
  EXPECT_EQ(store_->string("key"), odd);
  store_->remove("key");
  EXPECT_EQ(store_->string("key"), "latest default");
  EXPECT_EQ(store_->string("other"), "x");
}

TEST_P(SettingsStoreTest, ChangesSeveralTextsAndWipesOne) {
  store_->set("gone", "x");
  store_->registerDefault("gone", "default");
  store_->apply({{"gone", std::nullopt}, {"new", "text"}});
  EXPECT_EQ(store_->string("gone"), "default");
  EXPECT_EQ(store_->string("new"), "text");
  store_->wipe("new");
  EXPECT_EQ(store_->string("new"), std::nullopt);
}

TEST_P(SettingsStoreTest, ThreadsSeeEachOthersWritesAtOnce) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([this, number] {
      const auto key = "key " + std::to_string(number);
      for (int round = 0; round < 50; ++round) {
        store_->set(key, std::to_string(round));
        EXPECT_EQ(store_->string(key), std::to_string(round));
        store_->set("shared", "text");
        EXPECT_EQ(store_->string("shared"), "text");
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

INSTANTIATE_TEST_SUITE_P(All, SettingsStoreTest, testing::Values(inMemory, inAFile, withoutAFile));

}  // namespace
}  // namespace ovinta::platform
