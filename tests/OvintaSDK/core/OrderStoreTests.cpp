#include <gmock/gmock.h>

#include "OvintaSDK/core/facade/Library.h"
#include "tests/support/BrokenContainer.h"
#include "tests/support/DeathTest.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using OrderStoreTest = SDKFixture;

TEST_F(OrderStoreTest, IsWrittenOneOperationAtATime) {
  Context& context = *Library::process().context();
  EXPECT_EQ(context.storeQueue().maxConcurrentOperationCount(), 1U);
  // Whoever makes the container wants the limit, whatever was set meanwhile.
  context.storeQueue().setMaxConcurrentOperationCount(4);
  EXPECT_EQ(&context.persistentContainer(), &context.persistentContainer());
  EXPECT_THAT(logLines(), testing::ElementsAre(testing::StartsWith("Container location is ")));
  EXPECT_EQ(context.storeQueue().maxConcurrentOperationCount(), 1U);
}

class OrderStoreDeathTest : public SDKFixture {
 protected:
  void useContainer(std::optional<platform::StoreError> error) {
    restartWith([&error](platform::Services& changed) {
      changed.persistentContainers = std::make_shared<BrokenContainer>(
          BrokenContainer::Faults{.load = std::move(error), .hasStores = false});
    });
  }

 private:
  const DeathTest inAProcessOfItsOwn_;
};

TEST_F(OrderStoreDeathTest, AMissingOrMalformedModelEndsTheProcessWithoutAWord) {
  const std::optional<std::string> models[] = {{}, "", "{}", R"({"entities":[{"name":"Order"}]})"};
  for (const auto& model : models) {
    const auto bundle = std::make_shared<platform::simulation::SimulatedBundle>();
    if (model) bundle->setResource("VelkModel", "momd", *model);
    restartWith([&bundle](platform::Services& changed) { changed.libraryBundle = bundle; });
    EXPECT_EXIT(Library::process().context()->persistentContainer(),
                ::testing::KilledBySignal(SIGABRT), "^$")
        << model.value_or("(none)");
  }
}

TEST_F(OrderStoreDeathTest, AStoreThatCannotBeLoadedEndsTheProcess) {
  useContainer(platform::StoreError{"disk full", {{"path", "/x"}, {"code", "13"}}});
  EXPECT_DEATH(Library::process().context()->persistentContainer(),
               "Fatal error: Unresolved error disk full, .code: 13, path: /x.: "
               "file OvintaSDK/Ovinta, line 155");
  useContainer(platform::StoreError{"disk full", {}});
  EXPECT_DEATH(Library::process().context()->persistentContainer(), "disk full, .:.: file");
  // A container that loads and has no stores.
  useContainer(std::nullopt);
  EXPECT_EXIT(Library::process().context()->persistentContainer(),
              ::testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
}  // namespace ovinta::test
