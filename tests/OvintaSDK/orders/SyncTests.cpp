// The order store as a mirror of the list of orders.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <thread>
#include <tuple>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "OvintaSDK/model/CoreOrder.h"
#include "OvintaSDK/orders/SyncOrdersOperation.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/BrokenContainer.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Identifier, partner's identifier, site, state, customer's state.
using Summary =
    std::tuple<std::int64_t, std::optional<std::string>, std::int64_t, std::int64_t, std::int64_t>;

class Sync : public SDKFixture {
 protected:
  static void sync(const OrderList& orders, const OrdersCallback& callback) {
    SyncOrdersOperation::Callback whole;
    if (callback) {
      whole = [&](const OrderTablePtr& table, const ErrorPtr& error) {
        callback(table ? std::optional(table->list()) : std::nullopt, error);
      };
    }
    SyncOrdersOperation(
        Library::process().context(), [&] { return std::make_shared<const OrderTable>(orders); },
        whole)
        .main();
  }

  static std::vector<Summary> stored() {
    std::vector<Summary> summaries;
    const auto context = Library::process().context()->persistentContainer().newBackgroundContext();
    const auto kept = context->fetch(CoreOrder::fetchRequest());
    EXPECT_TRUE(kept) << kept.error().localizedDescription;
    for (const auto& object : *kept) {
      const CoreOrder order(object);
      summaries.emplace_back(order.id(), order.partnerIdentifier(), order.siteId(), order.state(),
                             order.customerState());
    }
    return summaries;
  }
};

TEST_F(Sync, RebuildsTheStoreFromEachFetch) {
  signIn();
  fetchOrders({fullOrder(), with(requiredOrder(8), {{"site_id", 5'000'000'000},
                                                    {"state", "gone"},
                                                    {"customer_state", "arrived"}})});
  EXPECT_THAT(stored(), UnorderedElementsAre(Summary(7, "P-7", 42, 1, 1),
                                             Summary(8, std::nullopt, 5'000'000'000, 5, 3)));
  fetchOrders({requiredOrder(8)});
  EXPECT_THAT(stored(), UnorderedElementsAre(Summary(8, std::nullopt, 42, 0, 0)));
  EXPECT_EQ(logLines().back(), Line::synced);
  fetchOrders({});
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(Sync, FollowsAListThatTheApplicationSets) {
  OrdersManager& orders = Ovinta::orders();
  orders.setOpen(OrderList{nullptr});
  orders.setAll(OrderList{decodeOrder(requiredOrder(1)), decodeOrder(requiredOrder(2))});
  orders.setAll(OrderList{nullptr, decodeOrder(requiredOrder(3)), nullptr});
  drain();
  EXPECT_THAT(stored(), UnorderedElementsAre(Summary(3, std::nullopt, 42, 0, 0)));
  EXPECT_EQ(itemOf(orders.all()), theOrders({3})) << "null entries are left out";
  EXPECT_THAT(orders.open().value(), IsEmpty());
  EXPECT_FALSE(orders.closed());
  orders.setClosed(OrderList{nullptr});
  EXPECT_THAT(orders.closed().value(), IsEmpty());

  orders.setAll(std::nullopt);
  drain();
  EXPECT_FALSE(orders.all());
  EXPECT_EQ(stored().size(), 1u) << "an absent list leaves the store alone";
  EXPECT_EQ(std::ranges::count(logLines(), Line::synced), 2);

  sync(OrderList{decodeOrder(requiredOrder(1))}, tell());
  EXPECT_THAT(happened({Step::told}), are(told(theOrders({1})))) << "those that it stored";
  sync({}, nullptr);
  EXPECT_THAT(stored(), IsEmpty());
}

/// Queues that call `onAdd` before each operation is added.
struct ObservedQueues : platform::OperationQueueFactory {
  struct Queue : platform::OperationQueue {
    void addOperation(std::shared_ptr<platform::Operation> operation) override {
      onAdd();
      inner->addOperation(std::move(operation));
    }
    void setMaxConcurrentOperationCount(std::size_t count) override {
      inner->setMaxConcurrentOperationCount(count);
    }
    std::size_t maxConcurrentOperationCount() const override {
      return inner->maxConcurrentOperationCount();
    }
    std::shared_ptr<platform::OperationQueue> inner;
    std::function<void()> onAdd;
  };

  std::shared_ptr<platform::OperationQueue> makeQueue() override {
    const auto queue = std::make_shared<Queue>();
    queue->inner = inner->makeQueue();
    queue->onAdd = [this] { onAdd(); };
    return queue;
  }
  std::shared_ptr<platform::OperationQueueFactory> inner;
  std::function<void()> onAdd = [] {};
};

TEST_F(Sync, EndsWithTheListThatWasSetLastByWhicheverThread) {
  const auto observed = std::make_shared<ObservedQueues>();
  observed->inner = queues;
  restartWith([&](platform::Services& changed) { changed.operationQueues = observed; });
  OrdersManager& orders = Ovinta::orders();
  const OrderList one{decodeOrder(requiredOrder(1))}, two{decodeOrder(requiredOrder(2))};
  std::atomic<bool> isAdding = false, hasOvertaken = false;
  std::thread other([&] {
    while (!isAdding) std::this_thread::yield();
    orders.setAll(two);
    hasOvertaken = true;
  });
  observed->onAdd = [&] {
    if (isAdding.exchange(true)) return;
    // The other has every chance to overtake.
    for (int i = 0; i < 200 && !hasOvertaken; ++i) std::this_thread::yield();
  };
  orders.setAll(one);
  other.join();
  drain();
  EXPECT_EQ(std::get<0>(stored().at(0)), orders.all()->at(0)->id);
}

TEST_F(Sync, DisturbsNothingWhenItFails) {
  for (const bool deletes : {false, true}) {
    restartWith([deletes](platform::Services& changed) {
      changed.persistentContainers =
          std::make_shared<BrokenContainer>(BrokenContainer::Faults{.deletes = deletes});
    });
    signIn();
    happened();
    fetchOrders({requiredOrder(1)});
    EXPECT_EQ(Ovinta::orders().all()->size(), 1u);
    EXPECT_EQ(Ovinta::orders().lastFetch()->error, nullptr);
    EXPECT_THAT(happened({Step::posted}),
                are(posted(SDKNotification::ordersUpdated, theOrders({1}))));
    EXPECT_EQ(logLines().back(), Line::synced);

    sync(*Ovinta::orders().all(), tell());
    EXPECT_THAT(happened(), are(told(theError("Error with Sync Orders Operation",
                                              deletes ? "cannot save" : "cannot delete"))));
  }
}

}  // namespace
}  // namespace ovinta::test
