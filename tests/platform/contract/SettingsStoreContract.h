#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/SettingsStore.h"

namespace ovinta::platform::contract {

/// What every settings store promises. A rig is a fixture with `open()`, the application's settings
/// as a new process finds them, and `kKeeps`: whether they outlast a process.
template <class Rig>
class SettingsStoreContract : public Rig {
 protected:
  std::shared_ptr<SettingsStore> store_ = this->open();
};
TYPED_TEST_SUITE_P(SettingsStoreContract);

TYPED_TEST_P(SettingsStoreContract, StoredTextsHideDefaultsUntilTheyAreRemoved) {
  auto& store = *this->store_;
  EXPECT_EQ(store.string("key"), std::nullopt);
  store.remove("key");
  store.registerDefault("key", "default");
  store.registerDefault("key", "later default");
  EXPECT_EQ(store.string("key"), "later default");
  const std::string odd("a'\"\n\0\xC3\xA9", 7);
  for (const auto& text : {std::string("stored"), std::string(), odd}) {
    store.set("key", text);
    store.set("other", "x");
    EXPECT_EQ(store.string("key"), text);
  }
  store.registerDefault("key", "latest default");
  EXPECT_EQ(store.string("key"), odd);
  store.remove("key");
  EXPECT_EQ(store.string("key"), "latest default");
  EXPECT_EQ(store.string("other"), "x");
}

TYPED_TEST_P(SettingsStoreContract, ChangesSeveralTextsAndWipesOne) {
  auto& store = *this->store_;
  store.set("gone", "x");
  store.registerDefault("gone", "default");
  store.apply({{"gone", std::nullopt}, {"new", "text"}});
  EXPECT_EQ(store.string("gone"), "default");
  EXPECT_EQ(store.string("new"), "text");
  store.wipe("new");
  EXPECT_EQ(store.string("new"), std::nullopt);
}

TYPED_TEST_P(SettingsStoreContract, ThreadsSeeEachOthersWritesAtOnce) {
  std::vector<std::jthread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([store = this->store_, number] {
      const auto key = "key " + std::to_string(number);
      for (int round = 0; round < 50; ++round) {
        store->set(key, std::to_string(round));
        EXPECT_EQ(store->string(key), std::to_string(round));
        store->set("shared", "text");
        EXPECT_EQ(store->string("shared"), "text");
      }
    });
  }
}

TYPED_TEST_P(SettingsStoreContract, EachWayOfWritingIsPermanentButForDefaults) {
  const std::string odd("a\0b\xC3\xA9", 5);
  for (const char* key : {"removed", "applied away", "wiped"}) this->store_->set(key, "x");
  this->store_->set("set", "first");
  this->store_->set("set", odd);
  this->store_->remove("removed");
  this->store_->apply({{"applied", "text"}, {"applied away", std::nullopt}});
  this->store_->wipe("wiped");
  this->store_->registerDefault("default", "x");
  this->store_.reset();
  const auto store = this->open();
  using Text = std::optional<std::string>;
  EXPECT_EQ(store->string("set"), TypeParam::kKeeps ? Text(odd) : Text());
  EXPECT_EQ(store->string("applied"), TypeParam::kKeeps ? Text("text") : Text());
  for (const char* key : {"removed", "applied away", "wiped", "default"}) {
    EXPECT_EQ(store->string(key), std::nullopt) << key;
  }
  EXPECT_EQ(store->failure().has_value() && TypeParam::kKeeps, false);
}

REGISTER_TYPED_TEST_SUITE_P(SettingsStoreContract, StoredTextsHideDefaultsUntilTheyAreRemoved,
                            ChangesSeveralTextsAndWipesOne, ThreadsSeeEachOthersWritesAtOnce,
                            EachWayOfWritingIsPermanentButForDefaults);

}  // namespace ovinta::platform::contract
