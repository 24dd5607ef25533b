#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "tests/platform/contract/ObjectStoreContract.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::contract {
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ObjectStoreContract);
}

namespace ovinta::platform::linuxos {
namespace {

using namespace contract;
using testing::HasSubstr;

class PersistentContainerTest : public testing::Test {
 protected:
  std::shared_ptr<PersistentContainer> make(ManagedObjectModel model = itemModel()) {
    return SQLitePersistentContainerFactory(directory_).makeContainer("Items", std::move(model));
  }

  std::shared_ptr<PersistentContainer> load() {
    auto container = make();
    EXPECT_EQ(loadError(*container), std::nullopt);
    return container;
  }

  std::optional<std::string> loadError(PersistentContainer& container,
                                       std::map<std::string, std::string>* details = nullptr) {
    std::optional<std::string> description;
    int calls = 0;
    container.loadPersistentStores([&](const auto& store, auto error) {
      ++calls;
      EXPECT_EQ(store.location, file_.string());
      EXPECT_EQ(container.persistentStoreDescriptions().at(0).location, store.location);
      if (error) description = error->localizedDescription;
      if (error && details) *details = error->userInfo;
    });
    EXPECT_EQ(calls, 1);
    return description;
  }

  test::TemporaryDirectory temporary_;
  const std::filesystem::path directory_ = temporary_.path() / "store";
  const std::filesystem::path file_ = directory_ / "Items.sqlite";
};

TEST_F(PersistentContainerTest, MakesPrivateFilesAndSaysWhichStepFailedWhere) {
  const auto container = load();
  EXPECT_EQ(test::modeOf(directory_), 0700U);
  EXPECT_EQ(test::modeOf(file_), 0600U);
  const auto context = container->newBackgroundContext();
  context->insert(item({}));
  const auto error = context->save().value();
  EXPECT_THAT(error.localizedDescription, HasSubstr("could not be saved"));
  EXPECT_EQ(error.userInfo.at("path"), file_.string());
  const auto unread = container->newBackgroundContext()->fetch({"Unknown"});
  ASSERT_FALSE(unread);
  EXPECT_THAT(unread.error().localizedDescription, HasSubstr("could not be read"));
}

TEST_F(PersistentContainerTest, SaysWhyAStoreCannotBeLoadedAndLeavesItAlone) {
  const auto target = temporary_.path() / "target";
  create_directory(target);
  const std::tuple<std::string, std::function<void()>> cases[] = {
      {"SQLite 26", [&] { test::writeFile(file_, "no database"); }},
      {"SQLite 17",
       [&] {
         auto model = itemModel();
         model.entities[0].attributes[1].optional = false;
         EXPECT_EQ(loadError(*make(model)), std::nullopt);
       }},
      {"SQLite 17",
       [&] {
         EXPECT_EQ(loadError(*make()), std::nullopt);
         SQLite::Database(file_.string(), SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 2");
       }},
      {"POSIX 22", [&] { create_symlink(target / "none", file_); }},
      {"POSIX 20", [&] { remove(directory_), create_directory_symlink(target, directory_); }},
      {"POSIX 13", [&] { chmod(directory_.c_str(), 0500); }},
  };
  for (const auto& [code, prepare] : cases) {
    SCOPED_TRACE(code);
    // Root may write anywhere.
    if (code == "POSIX 13" && geteuid() == 0) continue;
    std::filesystem::remove_all(directory_);
    create_directory(directory_);
    prepare();
    const bool existed = exists(file_);
    std::map<std::string, std::string> details;
    const auto error = loadError(*make(), &details);
    EXPECT_THAT(error.value_or(""), HasSubstr("The store could not be opened: "));
    EXPECT_EQ(details["path"], file_.string());
    EXPECT_EQ(details["domain"] + " " + details["code"], code);
    EXPECT_EQ(exists(file_), existed);
    chmod(directory_.c_str(), 0700);
  }
  const auto homeless = SQLitePersistentContainerFactory(std::nullopt).makeContainer("Items", {});
  homeless->loadPersistentStores([](const auto&, const auto& error) {
    EXPECT_THAT(error.value_or(StoreError{}).localizedDescription, HasSubstr("home directory"));
  });
}

TEST_F(PersistentContainerTest, AFullDiskKeepsTheOldList) {
  const auto child = test::forkChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    const auto container = load();
    const auto replaceBy = [&](std::int64_t number, std::size_t size) {
      const auto context = container->newBackgroundContext();
      EXPECT_EQ(context->executeBatchDelete(kAllItems), std::nullopt);
      context->insert(item(number, std::string(size, 'x')));
      return context->save();
    };
    EXPECT_EQ(replaceBy(1, 1), std::nullopt);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = 64 * 1024;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_NE(replaceBy(2, 200 * 1024), std::nullopt);
    EXPECT_THAT(numbers(*container->newBackgroundContext()), UnorderedElementsAre(1));
    EXPECT_EQ(replaceBy(3, 1), std::nullopt);
    EXPECT_THAT(numbers(*load()->newBackgroundContext()), UnorderedElementsAre(3));
    _exit(HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(test::waitFor(child), 0);
}

TEST_F(PersistentContainerTest, AKilledWriterLeavesTheOldListOrTheNewOne) {
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    std::filesystem::remove_all(directory_);
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    // List number n has 20 + n % 13 records, each of number n. A byte tells of each record that is
    // built, and "S" of each save.
    const auto child = test::forkChild([&] {
      const auto container = load();
      for (std::int64_t list = 1;; ++list) {
        const auto context = container->newBackgroundContext();
        bool isWell = !context->executeBatchDelete(kAllItems);
        for (std::int64_t count = 0; count < 20 + list % 13; ++count) {
          context->insert(item(list, std::string(500, 'x')));
          isWell = write(pipe[1], ".", 1) == 1 && isWell;
        }
        if (!isWell || context->save() || write(pipe[1], "S", 1) != 1) _exit(1);
      }
    });
    close(pipe[1]);
    // The child runs on while the bytes are read, so the signal finds it anywhere, most often in
    // the save that follows the last record.
    std::int64_t saved = 0;
    int bytes = 0;
    for (char byte = 0; read(pipe[0], &byte, 1) == 1;) {
      if (byte == 'S') ++saved;
      if (++bytes == 40 + round * 7) kill(child, SIGKILL);
    }
    EXPECT_EQ(test::waitFor(child), SIGKILL);
    close(pipe[0]);
    const auto found = numbers(*load()->newBackgroundContext());
    ASSERT_FALSE(found.empty());
    const auto list = found.front();
    EXPECT_EQ(found, std::vector<std::int64_t>(20 + list % 13, list));
    EXPECT_TRUE(list == saved || list == saved + 1) << list << " after " << saved;
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
