#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/PersistentContainer.h"

namespace ovinta::platform::contract {

inline const FetchRequest kAllItems{"Item"};

inline ManagedObjectModel itemModel() {
  return {{{"Item",
            {{"number", AttributeType::integer64, false}, {"text", AttributeType::string, true}}},
           {"Quoted \"name\"", {{"order", AttributeType::string, false}}}}};
}

inline std::shared_ptr<ManagedObject> item(AttributeValue number, AttributeValue text = {}) {
  auto object = std::make_shared<ManagedObject>("Item");
  object->setValue("number", std::move(number));
  object->setValue("text", std::move(text));
  return object;
}

/// The numbers of all stored items.
inline std::vector<std::int64_t> numbers(ManagedObjectContext& context) {
  const auto stored = context.fetch(kAllItems);
  EXPECT_TRUE(stored) << stored.error().localizedDescription;
  std::vector<std::int64_t> result;
  for (const auto& object : *stored) {
    result.push_back(std::get<std::int64_t>(object.value("number")));
  }
  return result;
}

/// What every object store promises. A rig is a fixture with `makeContainer(model)`, a container on
/// the application's one store.
template <class Rig>
class ObjectStoreContract : public Rig {
 protected:
  std::shared_ptr<PersistentContainer> load() {
    auto container = this->makeContainer(itemModel());
    int calls = 0;
    container->loadPersistentStores([&](const auto& store, const auto& error) {
      ++calls;
      EXPECT_EQ(error ? error->localizedDescription : "", "");
      EXPECT_EQ(container->persistentStoreDescriptions().at(0).location, store.location);
    });
    EXPECT_EQ(calls, 1);
    return container;
  }
};
TYPED_TEST_SUITE_P(ObjectStoreContract);

using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Whether a step succeeded.
inline bool isWell(const std::optional<StoreError>& error) {
  EXPECT_TRUE(!error || !error->localizedDescription.empty());
  return !error;
}

TYPED_TEST_P(ObjectStoreContract, KeepsRecordsOfEveryEntityAcrossARestart) {
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  const std::string odd("12\0\xC3\xA9", 5);
  {
    const auto container = this->load();
    const auto context = container->newBackgroundContext();
    context->insert(item(kMost, odd));
    context->insert(item(kLeast));
    context->insert(item(7, ""));
    // The names of the attributes in other orders than the entity's, and more of them.
    auto reversed = std::make_shared<ManagedObject>("Item");
    reversed->setValue("text", "reversed");
    reversed->setValue("number", 2);
    context->insert(reversed);
    auto placed = std::make_shared<ManagedObject>(
        "Item", std::make_shared<const std::vector<std::string>>(
                    std::vector<std::string>{"other", "text", "number"}));
    placed->setValue("number", 3);
    placed->setValue("other", "of no entity");
    context->insert(placed);
    auto late = item(1, "as it was inserted");
    context->insert(late);
    late->setValue("text", "as it is at the save");
    auto other = std::make_shared<ManagedObject>("Quoted \"name\"");
    other->setValue("order", "text");
    context->insert(other);
    EXPECT_THAT(*context->fetch(kAllItems), IsEmpty());
    EXPECT_TRUE(isWell(context->save()));
  }
  const auto container = this->load();
  const auto context = container->newBackgroundContext();
  std::vector<std::pair<AttributeValue, AttributeValue>> found;
  const auto stored = context->fetch(kAllItems);
  for (const auto& object : *stored) {
    found.emplace_back(object.value("number"), object.value("text"));
  }
  using Pair = std::pair<AttributeValue, AttributeValue>;
  EXPECT_THAT(found,
              UnorderedElementsAre(Pair(kMost, odd), Pair(kLeast, AttributeValue{}),
                                   Pair(std::int64_t{7}, ""), Pair(std::int64_t{2}, "reversed"),
                                   Pair(std::int64_t{3}, AttributeValue{}),
                                   Pair(std::int64_t{1}, "as it is at the save")));
  const auto others = context->fetch({"Quoted \"name\""});
  ASSERT_EQ(others->size(), 1U);
  EXPECT_EQ(others->front().value("order"), AttributeValue("text"));
}

TYPED_TEST_P(ObjectStoreContract, ATransactionIsSeenAsAWholeWhenSavedAndNotAtAllWhenDropped) {
  const auto container = this->load();
  auto writer = container->newBackgroundContext();
  writer->insert(item(1));
  ASSERT_TRUE(isWell(writer->save()));

  const auto reader = container->newBackgroundContext();
  ASSERT_TRUE(isWell(writer->executeBatchDelete(kAllItems)));
  writer->insert(item(2));
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(1));
  writer.reset();
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(1));

  writer = container->newBackgroundContext();
  ASSERT_TRUE(isWell(writer->executeBatchDelete(kAllItems)));
  writer->insert(item(3));
  writer->insert(item(4));
  ASSERT_TRUE(isWell(writer->save()));
  EXPECT_THAT(numbers(*reader), UnorderedElementsAre(3, 4));

  // A context may go on after a save.
  ASSERT_TRUE(isWell(writer->executeBatchDelete(kAllItems)));
  ASSERT_TRUE(isWell(writer->save()));
  EXPECT_THAT(numbers(*reader), IsEmpty());
}

TYPED_TEST_P(ObjectStoreContract, AFailedStepUndoesTheWholeTransaction) {
  const auto container = this->load();
  const auto first = container->newBackgroundContext();
  first->insert(item(1));
  ASSERT_TRUE(isWell(first->save()));
  for (const auto& misfit :
       {item({}), item("no number"), std::make_shared<ManagedObject>("Unknown")}) {
    const auto context = container->newBackgroundContext();
    ASSERT_TRUE(isWell(context->executeBatchDelete(kAllItems)));
    context->insert(item(2));
    context->insert(misfit);
    EXPECT_FALSE(isWell(context->save()));
    EXPECT_FALSE(isWell(context->save()));
    EXPECT_THAT(numbers(*container->newBackgroundContext()), UnorderedElementsAre(1));
  }
  const auto context = container->newBackgroundContext();
  EXPECT_FALSE(isWell(context->executeBatchDelete({"Unknown"})));
  context->insert(item(5));
  EXPECT_FALSE(isWell(context->save())) << "what should have been deleted is still there";
  EXPECT_THAT(numbers(*container->newBackgroundContext()), UnorderedElementsAre(1));
  const auto unknown = container->newBackgroundContext()->fetch({"Unknown"});
  ASSERT_FALSE(unknown);
  EXPECT_NE(unknown.error().localizedDescription, "");
}

TYPED_TEST_P(ObjectStoreContract, WritersOfSeveralThreadsWaitForEachOther) {
  const auto container = this->load();
  std::vector<std::jthread> threads;
  for (std::int64_t number = 1; number <= 4; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < 5; ++round) {
        const auto context = container->newBackgroundContext();
        EXPECT_TRUE(isWell(context->executeBatchDelete(kAllItems)));
        for (int copy = 0; copy < 20; ++copy) context->insert(item(number));
        EXPECT_TRUE(isWell(context->save()));
        const auto seen = numbers(*container->newBackgroundContext());
        EXPECT_EQ(seen, std::vector<std::int64_t>(20, seen.at(0)));
      }
    });
  }
}

REGISTER_TYPED_TEST_SUITE_P(ObjectStoreContract, KeepsRecordsOfEveryEntityAcrossARestart,
                            ATransactionIsSeenAsAWholeWhenSavedAndNotAtAllWhenDropped,
                            AFailedStepUndoesTheWholeTransaction,
                            WritersOfSeveralThreadsWaitForEachOther);

}  // namespace ovinta::platform::contract
