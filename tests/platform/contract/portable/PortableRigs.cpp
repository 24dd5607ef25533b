// What every platform may use as it is.
#include <atomic>
#include <thread>
#include <utility>

#include "platform/DefaultServices.h"
#include "platform/FatalError.h"
#include "platform/portable/Portable.h"
#include "tests/platform/contract/LogContract.h"
#include "tests/platform/contract/NotificationCenterContract.h"
#include "tests/platform/contract/ObjectStoreContract.h"
#include "tests/platform/contract/OperationQueueContract.h"
#include "tests/platform/contract/SettingsStoreContract.h"

namespace ovinta::platform {

/// A program without the library of a platform has none.
Services makeDefaultServices() { fatalError("This program tests services one by one"); }

namespace contract {
namespace {

struct NotificationCenterRig : testing::Test {
  std::shared_ptr<NotificationCenter> center_ = portable::makeNotificationCenter();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Portable, NotificationCenterContract, NotificationCenterRig);

struct LogRig : testing::Test {
  std::vector<std::string> read(std::size_t count) {
    portable::makeLog()->write("heard by nobody");
    while (written_ < count) std::this_thread::yield();
    written_ = 0;
    return std::exchange(lines_, {});
  }
  std::vector<std::string> lines_;
  std::atomic<std::size_t> written_ = 0;
  std::shared_ptr<Log> log_ = portable::makeLog([this](std::string_view line) {
    lines_.emplace_back(line);
    ++written_;
  });
};
INSTANTIATE_TYPED_TEST_SUITE_P(Function, LogContract, LogRig);

struct OperationQueueRig : testing::Test {
  void work() {}
  std::shared_ptr<OperationQueueFactory> factory_ = portable::makeOperationQueueFactory();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Portable, OperationQueueContract, OperationQueueRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Portable, ParallelOperationQueueContract, OperationQueueRig);

struct SettingsRig : testing::Test {
  static constexpr bool kKeeps = false;
  static auto open() { return portable::makeInMemorySettingsStore(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, SettingsStoreContract, SettingsRig);

struct ObjectStoreRig : testing::Test {
  std::shared_ptr<PersistentContainer> makeContainer(ManagedObjectModel model) {
    return factory_->makeContainer("Items", std::move(model));
  }
  std::shared_ptr<PersistentContainerFactory> factory_ =
      portable::makeInMemoryPersistentContainerFactory();
};
INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, ObjectStoreContract, ObjectStoreRig);

}  // namespace
}  // namespace contract
}  // namespace ovinta::platform
