#include "platform/linux/storage/SQLiteSettingsStore.h"

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <fstream>
#include <future>
#include <iterator>
#include <string>

#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
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

  /// A connection of somebody else's to the same file.
  std::unique_ptr<SQLite::Database> foreign() {
    create_directories(directory_);
    // Its commits wait for what a store reads just then.
    constexpr int kBusyTimeout = 10'000;
    return std::make_unique<SQLite::Database>(
        file_.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, kBusyTimeout);
  }

  std::vector<std::string> filesNamed(const std::string& part) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
      const auto name = entry.path().filename().string();
      if (name.find(part) != std::string::npos) names.push_back(name);
    }
    return names;
  }

  test::TemporaryDirectory temporary_;
  const std::filesystem::path directory_ = temporary_.path() / "made" / "on demand?#%41";
  const std::filesystem::path file_ = directory_ / "Settings.sqlite";
  std::shared_ptr<simulation::RecordingLog> log_ = std::make_shared<simulation::RecordingLog>();
};

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

TEST_F(SQLiteSettingsStoreTest, DamageThatShowsWhileTheFileIsOpenLosesNothing) {
  const auto store = open();
  store->set("early", "1");
  foreign()->exec(
      "PRAGMA writable_schema = ON; UPDATE sqlite_master SET rootpage = 999; "
      "PRAGMA schema_version = 99");
  store->set("late", "2");
  EXPECT_EQ(store->failure(), std::nullopt);
  EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr("Settings.sqlite.corrupt-1")));
  const auto next = open();
  EXPECT_EQ(next->string("early"), "1");
  EXPECT_EQ(next->string("late"), "2");
}

TEST_F(SQLiteSettingsStoreTest, WhatBelongsToADamagedFileGoesWithIt) {
  create_directories(directory_);
  for (const auto* suffix : kSQLiteSuffixes) test::writeFile(file_.string() + suffix, "x");
  setAsideSQLiteFile(file_);
  test::writeFile(directory_ / "Settings.sqlite.corrupt-2-wal", "left when a process ended");
  test::writeFile(directory_ / "Other.sqlite.corrupt-1", "x");
  EXPECT_THAT(filesNamed("Settings.sqlite"),
              testing::UnorderedElementsAre(
                  "Settings.sqlite.corrupt-1", "Settings.sqlite.corrupt-1-wal",
                  "Settings.sqlite.corrupt-1-shm", "Settings.sqlite.corrupt-1-journal",
                  "Settings.sqlite.corrupt-2-wal"));
  EXPECT_FALSE(removeSetAsideFiles(file_));
  EXPECT_THAT(filesNamed(""), ElementsAre("Other.sqlite.corrupt-1"));
}

TEST_F(SQLiteSettingsStoreTest, AFileThatIsNotDamagedIsLeftAloneWhateverItHolds) {
  const std::tuple<const char*, const char*> cases[] = {
      {"PRAGMA user_version = 2", "version 2"},
      {"DROP TABLE setting; CREATE TABLE setting(something, different)", "other tables"},
      {"CREATE TABLE more(x)", "other tables"},
  };
  for (const auto& [change, reason] : cases) {
    SCOPED_TRACE(change);
    std::filesystem::remove_all(directory_);
    log_ = std::make_shared<simulation::RecordingLog>();
    open()->set("key", "value");
    foreign()->exec(change);
    const auto content = [&] {
      return foreign()->execAndGet("SELECT group_concat(sql) FROM sqlite_master").getString();
    };
    const auto before = content();
    const auto store = open();
    EXPECT_EQ(store->string("key"), std::nullopt);
    EXPECT_THAT(store->failure().value_or(""), HasSubstr(reason));
    store->set("key", "new");
    store->wipe("key");
    EXPECT_THAT(log_->lines(),
                ElementsAre(AllOf(HasSubstr("open"), HasSubstr(reason)), HasSubstr("write")));
    EXPECT_THAT(filesNamed("corrupt"), IsEmpty());
    EXPECT_EQ(content(), before);
  }
  // Nor for a statement that fails while it is open.
  const auto store = std::make_unique<SQLiteSettingsStore>(directory_ / "Open.sqlite", log_);
  store->set("key", "value");
  SQLite::Database((directory_ / "Open.sqlite").string(), SQLite::OPEN_READWRITE)
      .exec("DROP TABLE setting");
  store->set("key", "new");
  EXPECT_THAT(store->failure().value_or(""), HasSubstr("no such table"));
  EXPECT_THAT(filesNamed("corrupt"), IsEmpty());
}

TEST_F(SQLiteSettingsStoreTest, AWriteThatFailsIsToldOnceKeptInMemoryAndMadeUpFor) {
  test::writeFile(temporary_.path() / "made", "in the way of the directory");
  {
    const auto store = open();
    EXPECT_EQ(store->failure(), std::nullopt);
    store->set("first", "secret");
    store->set("gone", "secret");
    store->remove("gone");
    EXPECT_EQ(store->string("first"), "secret");
    ASSERT_EQ(log_->lines().size(), 1U);
    EXPECT_EQ(store->failure(), log_->lines()[0]);
    EXPECT_THAT(log_->lines()[0], AllOf(HasSubstr("directory"), Not(HasSubstr("secret"))));
    remove(temporary_.path() / "made");
    store->set("second", "2");
    EXPECT_EQ(log_->lines().size(), 1U);
    EXPECT_EQ(store->failure(), std::nullopt);
  }
  {
    // Something is in the way of reading, and what is written meanwhile is newer than the file.
    create_directory(directory_ / "Settings.sqlite-wal");
    const auto store = open();
    EXPECT_EQ(store->string("first"), std::nullopt);
    EXPECT_NE(store->failure(), std::nullopt);
    store->set("second", "3");
    remove(directory_ / "Settings.sqlite-wal");
    store->set("third", "3");
    EXPECT_EQ(store->string("first"), "secret");
    EXPECT_EQ(store->string("second"), "3");
  }
  const auto store = open();
  EXPECT_EQ(store->string("first"), "secret");
  EXPECT_EQ(store->string("second"), "3");
  EXPECT_EQ(store->string("gone"), std::nullopt);
}

TEST_F(SQLiteSettingsStoreTest, AFullDiskLosesNothing) {
  const auto child = test::forkChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const auto limitFiles = [&](rlim_t bytes) {
      limit.rlim_cur = bytes;
      EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    };
    const auto store = open();
    store->set("key", "old");
    limitFiles(64 * 1024);
    store->apply({{"key", std::string(200 * 1024, 'x')}, {"other", "x"}});
    store->set("other", "y");
    EXPECT_EQ(store->string("key")->size(), 200U * 1024);
    EXPECT_NE(store->failure(), std::nullopt);
    EXPECT_EQ(log_->lines().size(), 1U);
    EXPECT_EQ(open()->string("key"), "old");
    limitFiles(limit.rlim_max);
    store->set("last", "z");
    EXPECT_EQ(store->failure(), std::nullopt);
    EXPECT_EQ(open()->string("key")->size(), 200U * 1024);
    _exit(HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(test::waitFor(child), 0);
}

TEST_F(SQLiteSettingsStoreTest, ADirectoryThatCannotBeWrittenLosesNothing) {
  open()->set("key", "old");
  const auto child = test::forkChild([&] {
    // Root may write anywhere, and nobody but root can give a file to another user.
    if (geteuid() == 0) {
      constexpr uid_t kNobody = 65534;
      for (const auto& path : {temporary_.path(), directory_.parent_path(), directory_, file_}) {
        EXPECT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
      }
      const auto others = directory_ / "Others.sqlite";
      test::writeFile(others, "");
      chmod(others.c_str(), 0666);
      EXPECT_EQ(seteuid(kNobody), 0);
      SQLiteSettingsStore exposed(others, std::make_shared<simulation::RecordingLog>());
      exposed.set("key", "secret");
      EXPECT_THAT(exposed.failure().value_or(""), HasSubstr("Cannot make the file private"));
    }
    chmod(directory_.c_str(), 0500);
    const auto store = open();
    EXPECT_EQ(store->string("key"), "old");
    for (const auto* text : {"1", "2", "3"}) store->set("other", text);
    EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr("not written"), HasSubstr("not write")));
    chmod(directory_.c_str(), 0700);
    store->set("last", "z");
    EXPECT_EQ(store->failure(), std::nullopt);
    EXPECT_EQ(store->string("key"), "old");
    EXPECT_EQ(open()->string("other"), "3");
    _exit(HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(test::waitFor(child), 0);
}

TEST_F(SQLiteSettingsStoreTest, AKilledWriterLeavesAllOfAChangeOrNothing) {
  for (int round = 0; round < 20; ++round) {
    SCOPED_TRACE(round);
    std::filesystem::remove_all(directory_);
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const auto child = test::forkChild([&] {
      const auto store = open();
      for (int number = 1;; ++number) {
        const auto text = std::to_string(number);
        store->apply({{"one", text}, {"two", text}, {"three", text}});
        if (write(pipe[1], ".", 1) != 1) _exit(1);
      }
    });
    close(pipe[1]);
    // The child runs on while the bytes are read, so the signal finds it anywhere.
    int saved = 0;
    for (char byte = 0; read(pipe[0], &byte, 1) == 1;) {
      if (++saved == 1 + round * 3) kill(child, SIGKILL);
    }
    EXPECT_EQ(test::waitFor(child), SIGKILL);
    close(pipe[0]);
    const auto store = open();
    const auto found = std::stoi(store->string("one").value_or("0"));
    EXPECT_TRUE(found == saved || found == saved + 1) << found << " after " << saved;
    for (const auto* key : {"two", "three"}) {
      EXPECT_EQ(store->string(key), std::to_string(found));
    }
  }
}

TEST_F(SQLiteSettingsStoreTest, AWipedTextIsNowhereInTheDirectory) {
  const std::string secret = "the-token-of-a-customer";
  const auto hasSecret = [&] {
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
      std::ifstream stream(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
      if (bytes.find(secret) != std::string::npos) return true;
    }
    return false;
  };
  open()->set("token", secret);
  setAsideSQLiteFile(file_);
  const auto store = open();
  store->set("kept", "x");
  store->set("token", secret);
  store->set("token", secret + " of another");
  // What is removed or replaced may go on in a copy, what is wiped may not.
  store->remove("kept");
  EXPECT_TRUE(exists(directory_ / "Settings.sqlite.corrupt-1"));
  EXPECT_TRUE(hasSecret());

  const auto reader = foreign();
  reader->exec("BEGIN; SELECT * FROM setting");
  SQLiteSettingsStore hurried(file_, log_, std::chrono::milliseconds(1));
  hurried.wipe("token");
  EXPECT_THAT(hurried.failure().value_or(""), HasSubstr("wipe"));
  EXPECT_THAT(filesNamed("corrupt"), IsEmpty());
  reader->exec("COMMIT");
  hurried.set("kept", "y");
  EXPECT_EQ(hurried.failure(), std::nullopt);
  EXPECT_FALSE(hasSecret());
  EXPECT_EQ(open()->string("token"), std::nullopt);
}

/// A file as another process may leave it, or hold it locked, at the first moment.
struct Moment {
  const char* name;
  /// What the other does, on a connection that it keeps; none where it does nothing.
  const char* work;
  bool isLocked = false;
};

class SharedSettingsTest : public SQLiteSettingsStoreTest,
                           public testing::WithParamInterface<Moment> {};

/// Keeps a promise at its first line.
struct FirstLine : Log {
  void write(std::string_view) override {
    if (!told.exchange(true)) promise.set_value();
  }
  std::atomic<bool> told = false;
  std::promise<void> promise;
};

TEST_P(SharedSettingsTest, TwoStoresMayUseTheSameFileFromTheFirstMomentOn) {
  auto other = *GetParam().work ? foreign() : nullptr;
  if (other) other->exec(GetParam().work);
  const auto waits = std::make_shared<FirstLine>();
  const auto log = std::make_shared<simulation::RecordingLog>(waits);
  auto first = std::async(std::launch::async, [&] {
    auto store = std::make_unique<SQLiteSettingsStore>(file_, log, std::chrono::milliseconds(1));
    const auto found = store->string("theirs");
    store->set("mine", "1");
    EXPECT_EQ(store->failure(), std::nullopt);
    return std::pair(std::move(store), found);
  });
  if (GetParam().isLocked) waits->promise.get_future().wait();
  if (other && GetParam().isLocked) other->exec("COMMIT");
  other = nullptr;
  const auto [store, found] = first.get();
  EXPECT_EQ(found.has_value(), std::string(GetParam().name) == "read");
  EXPECT_EQ(log->lines().size(), GetParam().isLocked ? 1U : 0U);
  const auto second = open();
  for (const auto* text : {"2", "3"}) {
    second->set("second", text);
    store->set("mine", text);
  }
  EXPECT_EQ(open()->string("second"), "3");
  EXPECT_EQ(open()->string("mine"), "3");
  EXPECT_THAT(log_->lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, SharedSettingsTest,
    testing::Values(
        Moment{"none", ""}, Moment{"empty", "PRAGMA user_version"},
        Moment{"beforeWriteAheadMode", "BEGIN IMMEDIATE", true},
        Moment{"beforeTheTables", "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE", true},
        Moment{"read",
               "CREATE TABLE setting(key TEXT PRIMARY KEY NOT NULL, value TEXT NOT NULL) STRICT, "
               "WITHOUT ROWID; INSERT INTO setting VALUES('theirs', 'x'); "
               "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE",
               true}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace ovinta::platform::linuxos
