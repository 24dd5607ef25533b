#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const FetchRequest kAllItems{"Item"};

ManagedObjectModel itemModel() {
  return {{{"Item",
            {{"number", AttributeType::integer64, false}, {"text", AttributeType::string, true}}},
           {"Quoted \"name\"", {{"order", AttributeType::string, false}}}}};
}

std::shared_ptr<ManagedObject> item(AttributeValue number, AttributeValue text = {}) {
  auto object = std::make_shared<ManagedObject>("Item");
  object->setValue("number", std::move(number));
  object->setValue("text", std::move(text));
  return object;
}

std::vector<std::int64_t> numbers(ManagedObjectContext& context) {
  StoreError error;
  std::vector<std::int64_t> result;
  for (const auto& object : context.fetch(kAllItems, &error)) {
    result.push_back(std::get<std::int64_t>(object.value("number")));
  }
  EXPECT_EQ(error.localizedDescription, "");
  return result;
}

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

TEST_F(PersistentContainerTest, KeepsRecordsOfEveryEntityAcrossARestart) {
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  const std::string odd("12\0\xC3\xA9", 5);
  {
    const auto container = load();
    const auto context = container->newBackgroundContext();
    context->insert(item(kMost, odd));
    context->insert(item(kLeast));
    context->insert(item(7, ""));
    auto late = item(1, "as it was inserted");
    context->insert(late);
    late->setValue("text", "as it is at the save");
    auto other = std::make_shared<ManagedObject>("Quoted \"name\"");
    other->setValue("order", "text");
    context->insert(other);
    EXPECT_THAT(context->fetch(kAllItems, nullptr), IsEmpty());
    EXPECT_EQ(context->save(), std::nullopt);
  }
  EXPECT_EQ(test::modeOf(directory_), 0700U);
  EXPECT_EQ(test::modeOf(file_), 0600U);

  const auto container = load();
  const auto context = container->newBackgroundContext();
  std::vector<std::pair<AttributeValue, AttributeValue>> found;
  for (const auto& object : context->fetch(kAllItems, nullptr)) {
    found.emplace_back(object.value("number"), object.value("text"));
  }
  using Pair = std::pair<AttributeValue, AttributeValue>;
  EXPECT_THAT(found, UnorderedElementsAre(Pair(kMost, odd), Pair(kLeast, AttributeValue{}),
                                          Pair(std::int64_t{7}, ""),
                                          Pair(std::int64_t{1}, "as it is at the save")));
  const auto others = context->fetch({"Quoted \"name\""}, nullptr);
  ASSERT_EQ(others.size(), 1U);
  EXPECT_EQ(others[0].value("order"), AttributeValue("text"));
}

TEST_F(PersistentContainerTest, ATransactionIsSeenAsAWholeWhenSavedAndNotAtAllWhenDropped) {
  const auto container = load();
  auto writer = container->newBackgroundContext();
  writer->insert(item(1));
  ASSERT_EQ(writer->save(), std::nullopt);

  const auto reader = container->newBackgroundContext();
  ASSERT_EQ(writer->executeBatchDelete(kAllItems), std::nullopt);
  writer->insert(item(2));
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(1));
  writer.reset();
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(1));

  writer = container->newBackgroundContext();
  ASSERT_EQ(writer->executeBatchDelete(kAllItems), std::nullopt);
  writer->insert(item(3));
  writer->insert(item(4));
  ASSERT_EQ(writer->save(), std::nullopt);
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(3, 4));

  // A context may go on after a save.
  ASSERT_EQ(writer->executeBatchDelete(kAllItems), std::nullopt);
  ASSERT_EQ(writer->save(), std::nullopt);
  EXPECT_THAT(numbers(*reader), IsEmpty());
}

TEST_F(PersistentContainerTest, AFailedStepUndoesTheWholeTransaction) {
  const auto container = load();
  const auto first = container->newBackgroundContext();
  first->insert(item(1));
  ASSERT_EQ(first->save(), std::nullopt);
  for (const auto& misfit :
       {item({}), item("no number"), std::make_shared<ManagedObject>("Unknown")}) {
    const auto context = container->newBackgroundContext();
    ASSERT_EQ(context->executeBatchDelete(kAllItems), std::nullopt);
    context->insert(item(2));
    context->insert(misfit);
    const auto error = context->save();
    ASSERT_NE(error, std::nullopt);
    EXPECT_THAT(error->localizedDescription, HasSubstr("could not be saved"));
    EXPECT_EQ(error->userInfo.at("path"), file_.string());
    EXPECT_NE(context->save(), std::nullopt);
    EXPECT_THAT(numbers(*container->newBackgroundContext()), UnorderedElementsAre(1));
  }
  const auto context = container->newBackgroundContext();
  EXPECT_NE(context->executeBatchDelete({"Unknown"}), std::nullopt);
  context->insert(item(5));
  EXPECT_NE(context->save(), std::nullopt) << "what should have been deleted is still there";
  StoreError error;
  EXPECT_THAT(container->newBackgroundContext()->fetch({"Unknown"}, &error), IsEmpty());
  EXPECT_THAT(error.localizedDescription, HasSubstr("could not be read"));
}

TEST_F(PersistentContainerTest, WritersOfSeveralThreadsWaitForEachOther) {
  const auto container = load();
  std::vector<std::thread> threads;
  for (std::int64_t number = 1; number <= 4; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < 5; ++round) {
        const auto context = container->newBackgroundContext();
        EXPECT_EQ(context->executeBatchDelete(kAllItems), std::nullopt);
        for (int copy = 0; copy < 20; ++copy) context->insert(item(number));
        EXPECT_EQ(context->save(), std::nullopt);
        const auto seen = numbers(*container->newBackgroundContext());
        EXPECT_EQ(seen, std::vector<std::int64_t>(20, seen.at(0)));
      }
    });
  }
  for (auto& thread : threads) thread.join();
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
