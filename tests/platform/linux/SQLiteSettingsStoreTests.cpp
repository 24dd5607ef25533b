#include "platform/linux/SQLiteSettingsStore.h"

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <barrier>
#include <future>
#include <string>
#include <thread>

#include "platform/simulation/RecordingLog.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linux {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SQLiteSettingsStoreTest : public testing::Test {
 protected:
  std::unique_ptr<SQLiteSettingsStore> open() {
    return std::make_unique<SQLiteSettingsStore>(file_, log_);
  }

  test::TemporaryDirectory temporary_;
  const std::filesystem::path directory_ = temporary_.path() / "made" / "on demand";
  const std::filesystem::path file_ = directory_ / "Settings.sqlite";
  std::shared_ptr<simulation::RecordingLog> log_ = std::make_shared<simulation::RecordingLog>();
};

TEST_F(SQLiteSettingsStoreTest, WhatWasWrittenSurvivesTheEndOfAKilledProcessButDefaultsDoNot) {
  const std::string odd("a\0b\xC3\xA9", 5);
  test::waitFor(test::forkChild([&] {
    const auto store = open();
    store->registerDefault("default", "x");
    store->set("kept", "first");
    store->set("kept", odd);
    store->set("removed", "x");
    store->remove("removed");
    kill(getpid(), SIGKILL);
  }));
  const auto store = open();
  EXPECT_EQ(store->string("kept"), odd);
  EXPECT_EQ(store->string("removed"), std::nullopt);
  EXPECT_EQ(store->string("default"), std::nullopt);
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(SQLiteSettingsStoreTest, ReadingMakesNothingAndWritingMakesPrivateFiles) {
  EXPECT_EQ(open()->string("key"), std::nullopt);
  EXPECT_FALSE(exists(temporary_.path() / "made"));

  for (const mode_t mask : {0, 0777}) {
    const auto before = umask(mask);
    const auto store = open();
    store->set("key", "value");
    umask(before);
    EXPECT_EQ(test::modeOf(temporary_.path() / "made"), 0700U);
    EXPECT_EQ(test::modeOf(directory_), 0700U);
    for (const auto* suffix : {"", "-wal", "-shm"}) {
      EXPECT_EQ(test::modeOf(file_.string() + suffix), 0600U) << suffix;
    }
    std::filesystem::remove_all(temporary_.path() / "made");
  }

  open()->set("key", "value");
  chmod(directory_.c_str(), 0755);
  chmod(file_.c_str(), 0644);
  EXPECT_EQ(open()->string("key"), "value");
  EXPECT_EQ(test::modeOf(directory_), 0700U);
  EXPECT_EQ(test::modeOf(file_), 0600U);
}

TEST_F(SQLiteSettingsStoreTest, ADamagedFileIsSetAsideLoggedAndRebuilt) {
  const std::function<void()> damages[] = {
      [&] { test::writeFile(file_, "no database"); },
      [&] { test::writeFile(file_, "SQLite format 3" + std::string(5000, '\0')); },
      [&] {
        SQLite::Database(file_.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
            .exec("CREATE TABLE setting(something, different)");
      },
  };
  create_directories(directory_);
  int number = 0;
  for (const auto& damage : damages) {
    SCOPED_TRACE(++number);
    damage();
    {
      const auto store = open();
      EXPECT_EQ(store->string("key"), std::nullopt);
      store->set("key", "value");
    }
    EXPECT_EQ(open()->string("key"), "value");
    const auto aside = "Settings.sqlite.corrupt-" + std::to_string(number);
    EXPECT_TRUE(exists(directory_ / aside));
    ASSERT_EQ(log_->lines().size(), static_cast<std::size_t>(number));
    EXPECT_THAT(log_->lines().back(), AllOf(HasSubstr("damaged"), HasSubstr(aside)));
    remove(file_);
  }
}

TEST_F(SQLiteSettingsStoreTest, AWriteThatFailsIsLoggedKeptInMemoryAndMadeUpFor) {
  test::writeFile(temporary_.path() / "made", "in the way of the directory");
  {
    const auto store = open();
    store->set("first", "secret");
    store->set("gone", "secret");
    store->remove("gone");
    EXPECT_EQ(store->string("first"), "secret");
    EXPECT_EQ(log_->lines().size(), 3U);
    EXPECT_THAT(log_->lines(), testing::Each(Not(HasSubstr("secret"))));
    remove(temporary_.path() / "made");
    store->set("second", "2");
    EXPECT_EQ(log_->lines().size(), 3U);
  }
  const auto store = open();
  EXPECT_EQ(store->string("first"), "secret");
  EXPECT_EQ(store->string("second"), "2");
  EXPECT_EQ(store->string("gone"), std::nullopt);
}

TEST_F(SQLiteSettingsStoreTest, WaitsForAnotherWriterEvenBeforeTheFileIsInWriteAheadMode) {
  create_directories(directory_);
  test::writeFile(file_, "");
  std::promise<void> locked;
  std::thread other([&] {
    SQLite::Database database(file_.string(), SQLite::OPEN_READWRITE);
    database.exec("BEGIN IMMEDIATE");
    locked.set_value();
    // Takes its time.
    database.exec(
        "CREATE TABLE other AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < 50000) SELECT i FROM n");
    database.exec("COMMIT");
  });
  locked.get_future().wait();
  open()->set("key", "value");
  other.join();
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_EQ(open()->string("key"), "value");
}

TEST_F(SQLiteSettingsStoreTest, TwoStoresMayWriteTheSameFileFromTheFirstMomentOn) {
  std::barrier together(2);
  const auto write = [&](const std::string& mark) {
    for (int round = 0; round < 10; ++round) {
      // On a file of its own each time: they meet while it is being made.
      together.arrive_and_wait();
      SQLiteSettingsStore store(directory_ / std::to_string(round) / "S.sqlite", log_);
      for (int key = 0; key < 5; ++key) store.set(mark + std::to_string(key), mark);
      together.arrive_and_wait();
      SQLiteSettingsStore reader(directory_ / std::to_string(round) / "S.sqlite", log_);
      for (int key = 0; key < 5; ++key) EXPECT_EQ(reader.string(mark + std::to_string(key)), mark);
    }
  };
  std::thread other(write, "other");
  write("one");
  other.join();
  EXPECT_THAT(log_->lines(), IsEmpty());
}

}  // namespace
}  // namespace ovinta::platform::linux
