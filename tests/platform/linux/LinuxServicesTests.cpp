#include <gmock/gmock.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mount.h>

#include <future>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/Linux.h"
#include "platform/linux/main/DirectoryBundle.h"
#include "platform/linux/main/GLibMainQueue.h"
#include "platform/linux/main/SystemClock.h"
#include "platform/linux/main/SystemLog.h"
#include "platform/linux/notifications/NotificationStore.h"
#include "platform/linux/storage/PrivateDirectory.h"
#include "platform/portable/ExitAwareThread.h"
#include "platform/portable/LibraryBundle.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/support/DeathTest.h"
#include "tests/support/Files.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

using testing::HasSubstr;

TEST(DirectoryBundleTest, ReadsItsFilesAnewAtEveryCall) {
  const test::TemporaryDirectory directory;
  const DirectoryBundle bundle(directory.path());
  EXPECT_EQ(bundle.infoText("version"), std::nullopt);
  EXPECT_EQ(bundle.resource("some", "data"), std::nullopt);

  test::writeFile(directory.path() / "Info.json", R"({"version": "1.2", "number": 3})");
  const std::string bytes("\0\xFF\n", 3);
  for (const auto& content : {bytes, std::string()}) {
    test::writeFile(directory.path() / "some.data", content);
    EXPECT_EQ(bundle.resource("some", "data"), content);
  }
  create_directory(directory.path() / "other.data");
  EXPECT_EQ(bundle.resource("other", "data"), std::nullopt);
  EXPECT_EQ(bundle.infoText("version"), "1.2");
  EXPECT_EQ(bundle.infoText("number"), std::nullopt);
  EXPECT_EQ(bundle.infoText("none"), std::nullopt);
  for (const auto* malformed : {"", "{", "[\"version\"]"}) {
    test::writeFile(directory.path() / "Info.json", malformed);
    EXPECT_EQ(bundle.infoText("version"), std::nullopt);
  }
}

TEST(LibraryBundleTest, HoldsTheVersionAndTheDataModel) {
  const portable::LibraryBundle bundle;
  EXPECT_EQ(bundle.infoText("CFBundleShortVersionString"), OVINTA_PROJECT_VERSION);
  EXPECT_EQ(bundle.infoText("other"), std::nullopt);
  EXPECT_EQ(bundle.resource("VelkModel", "other"), std::nullopt);
  const auto model = ManagedObjectModel::parse(bundle.resource("VelkModel", "momd").value());
  EXPECT_TRUE(model && model->entity("Order"));
}

TEST(PrivateDirectoryTest, TheDefaultDataDirectoryFollowsTheEnvironment) {
  const struct {
    const char *dataHome, *home, *identifier, *expected;
  } cases[] = {
      {"/data", "/home/user", "org.example.app", "/data/org.example.app/OvintaSDK"},
      {nullptr, "/home/user", "app", "/home/user/.local/share/app/OvintaSDK"},
      {"relative", "/home/user", "app", "/home/user/.local/share/app/OvintaSDK"},
      {"/data", nullptr, "../../etc", "/data/.._.._etc/OvintaSDK"},
      {"/data", nullptr, "..", "/data/application/OvintaSDK"},
      {"/data", nullptr, "", "/data/application/OvintaSDK"},
  };
  for (const auto& tested : cases) {
    const test::ScopedVariable dataHome("XDG_DATA_HOME", tested.dataHome);
    const test::ScopedVariable home("HOME", tested.home);
    EXPECT_EQ(defaultDataDirectory(tested.identifier), tested.expected);
  }
  const test::ScopedVariable dataHome("XDG_DATA_HOME", nullptr);
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
    const test::ScopedVariable home("HOME", unusable);
    // Whatever the user database says: a user's home or none, but never a relative path.
    const auto directory = defaultDataDirectory("app");
    EXPECT_TRUE(!directory || directory->is_absolute());
  }
}

TEST(PrivateDirectoryTest, AnotherUsersDirectoryIsRefused) {
  if (geteuid() == 0) GTEST_SKIP() << "root may use any directory";
  EXPECT_TRUE(preparePrivateDirectory("/"));
}

TEST(LinuxServicesTest, AreCompleteAndTouchTheDiskOnlyWhenWrittenTo) {
  const test::DeathTest inAProcessOfItsOwn;
  const test::TemporaryDirectory directory;
  const auto data = directory.path() / "data";
  test::writeFile(directory.path() / "Info.json", R"({"name": "the app"})");
  const auto made = makeServices(
      {.applicationID = "tests", .mainBundleDirectory = directory.path(), .dataDirectory = data});
  EXPECT_EQ(made.mainBundle->infoText("name"), "the app");
  EXPECT_EQ(made.settings->string("key"), std::nullopt);
  EXPECT_EQ(made.device->batteryState(), BatteryState::unknown);
  EXPECT_GT(made.clock->now(), Date(std::chrono::sys_days(std::chrono::year(2020) / 1 / 1)));
  EXPECT_FALSE(exists(data));
  made.settings->set("key", "value");
  const auto container = made.persistentContainers->makeContainer(
      "VelkModel",
      ManagedObjectModel::parse(made.libraryBundle->resource("VelkModel", "momd").value()).value());
  container->loadPersistentStores([&](const auto& store, const auto& error) {
    EXPECT_EQ(store.location, (data / "VelkModel.sqlite").string());
    EXPECT_FALSE(error);
  });
  EXPECT_EQ(test::modeOf(data / "Settings.sqlite"), 0600U);

  install(made);
  const auto& first = services();
  int activations = 0;
  const auto observer = made.notificationCenter->addObserver(kApplicationDidBecomeActive,
                                                             [&](const auto&) { ++activations; });
  applicationDidBecomeActive();
  EXPECT_EQ(activations, 1);
  EXPECT_EQ(first.clock, made.clock);
  auto changed = made;
  changed.clock = std::make_shared<SystemClock>();
  install(changed);
  EXPECT_EQ(services().clock, changed.clock);
  EXPECT_EQ(first.clock, made.clock) << "earlier references stay valid";
  changed.text = nullptr;
  EXPECT_EXIT(install(changed), testing::KilledBySignal(SIGABRT),
              "Fatal error: Platform service missing: text");
}

/// Uses each service that looks for files. Gives what settings and orders have to say.
std::pair<std::string, std::string> useOnce(const Services& made) {
  EXPECT_EQ(made.mainBundle->resource("embedded", "mobileprovision"), std::nullopt);
  EXPECT_EQ(made.settings->string("key"), std::nullopt);
  made.settings->set("key", "value");
  EXPECT_EQ(made.settings->string("key"), "value");
  std::promise<void> asked;
  made.userNotifications->getPendingNotificationRequests([&](const auto& pending) {
    EXPECT_TRUE(pending.empty());
    asked.set_value();
  });
  asked.get_future().wait();
  std::string loaded;
  const auto container = made.persistentContainers->makeContainer("VelkModel", {});
  container->loadPersistentStores([&](const auto&, const auto& error) {
    if (error) loaded = error->localizedDescription;
  });
  return {made.settings->failure().value_or(""), loaded};
}

TEST(LinuxServicesTest, ThrowNothingWithoutAWorkingDirectoryOrProc) {
  const test::TemporaryDirectory directory;
  const auto log = std::make_shared<simulation::RecordingLog>();
  const auto program = executablePath();
  EXPECT_EQ(executablePath("/nowhere/exe"), program);

  const auto withoutProc = test::forkChild([&] {
    // Where the system lets nobody do that the rest holds all the same.
    const int own = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS;
    if (unshare(own) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0) {
      mount("none", "/proc", "tmpfs", 0, nullptr);
    }
    const test::ScopedVariable dataHome("XDG_DATA_HOME", directory.path().c_str());
    EXPECT_EQ(useOnce(makeServices({.log = log})), (std::pair<std::string, std::string>()));
    EXPECT_TRUE(exists(directory.path() / program.filename() / "OvintaSDK/Settings.sqlite"));
    _exit(testing::Test::HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(test::waitFor(withoutProc), 0);

  const auto withoutDirectory = test::forkChild([&] {
    const auto gone = directory.path() / "gone";
    create_directory(gone);
    current_path(gone);
    remove(gone);
    const auto made = makeServices({.applicationID = "tests",
                                    .mainBundleDirectory = "bundle",
                                    .dataDirectory = "data",
                                    .log = log});
    EXPECT_THAT(log->lines(), testing::ElementsAre(HasSubstr("resources")));
    current_path(directory.path());
    test::writeFile("embedded.mobileprovision", "of somebody else");
    const auto [settings, orders] = useOnce(made);
    EXPECT_THAT(settings, HasSubstr("working directory that is gone"));
    EXPECT_THAT(orders, HasSubstr("working directory that is gone"));
    EXPECT_FALSE(std::filesystem::exists("data"));
    _exit(testing::Test::HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(test::waitFor(withoutDirectory), 0);
}

TEST(LinuxServicesTest, SayWhatIsMissingWhereTheSystemHasNoThreadLeft) {
  const test::DeathTest inAProcessOfItsOwn;
  const auto useWithoutThreads = [] {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    // No address space has room for such a stack.
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 60);
    pthread_setattr_default_np(&attributes);
    portable::ExitAwareThread(
        "ovinta-test", [] {}, [] {})
        .startOnce();
  };
  EXPECT_EXIT(useWithoutThreads(), testing::KilledBySignal(SIGABRT),
              "Fatal error: Could not start the thread ovinta-test");
}

TEST(LinuxServicesTest, HandOverWhatWasClickedBeforeTheStart) {
  const test::TemporaryDirectory data;
  const Dictionary userInfo{{"site", 42}};
  NotificationStore store(data.path() / "Notifications.sqlite",
                          std::make_shared<SystemLog>("tests"));
  store.put({});
  store.remove({""});
  store.addClick(userInfo);
  Dictionary clicked;
  const auto made = makeServices({.applicationID = "tests",
                                  .dataDirectory = data.path(),
                                  .onNotificationClicked = [&](const Dictionary& handedOver) {
                                    clicked = handedOver;
                                    quitMainLoop();
                                  }});
  runMainLoop();
  EXPECT_EQ(clicked, userInfo);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
