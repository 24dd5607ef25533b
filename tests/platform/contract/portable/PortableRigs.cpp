// What every platform may use as it is.
#include "platform/DefaultServices.h"
#include "platform/FatalError.h"
#include "platform/portable/Portable.h"
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
