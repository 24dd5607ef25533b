// The order store rebuilt from a list of orders, against the same statements to SQLite.
#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "OvintaSDK/orders/SyncOrdersOperation.h"
#include "bench/Row.h"
#include "bench/SimulatedLibrary.h"
#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "replay/TemporaryDirectory.h"

namespace ovinta::bench {
namespace {

using namespace std::chrono_literals;

template <std::size_t count>
const OrderTablePtr& orders() {
  static const auto table = std::make_shared<const OrderTable>(makeOpenOrders(count));
  return table;
}

/// A database with the store's table and durability, by SQLite's own interface.
class RawStore {
 public:
  RawStore() {
    const std::string file = directory_.path() / "raw.sqlite";
    check(sqlite3_open_v2(file.c_str(), &database_,
                          SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                          nullptr));
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA secure_delete = ON");
    run("CREATE TABLE \"Order\"(\"id\" INTEGER NOT NULL, \"partnerIdentifier\" TEXT, "
        "\"siteId\" INTEGER NOT NULL, \"state\" INTEGER NOT NULL, "
        "\"customerState\" INTEGER NOT NULL) STRICT");
    check(sqlite3_prepare_v2(database_, "INSERT INTO \"Order\" VALUES(?, ?, ?, ?, ?)", -1, &insert_,
                             nullptr));
  }
  ~RawStore() {
    sqlite3_finalize(insert_);
    sqlite3_close(database_);
  }
  RawStore(const RawStore&) = delete;
  RawStore& operator=(const RawStore&) = delete;

  void rebuild(const OrderList& orders) {
    run("BEGIN IMMEDIATE");
    run("DELETE FROM \"Order\"");
    for (const OrderPtr& order : orders) insert(*order);
    run("COMMIT");
  }

 private:
  static void check(int result) {
    if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errstr(result));
  }

  void run(const char* statement) {
    check(sqlite3_exec(database_, statement, nullptr, nullptr, nullptr));
  }

  void insert(const Order& order) {
    check(sqlite3_bind_int64(insert_, 1, order.id));
    const auto& partner = order.partnerIdentifier;
    check(partner ? sqlite3_bind_text(insert_, 2, partner->data(),
                                      static_cast<int>(partner->size()), SQLITE_STATIC)
                  : sqlite3_bind_null(insert_, 2));
    check(sqlite3_bind_int64(insert_, 3, order.siteID));
    check(sqlite3_bind_int64(insert_, 4, rawValue(order.state())));
    check(sqlite3_bind_int64(insert_, 5, rawValue(order.customerState())));
    if (sqlite3_step(insert_) != SQLITE_DONE) throw std::runtime_error("not inserted");
    check(sqlite3_reset(insert_));
  }

  const replay::TemporaryDirectory directory_;
  sqlite3* database_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
};

/// A library whose order store is the real one.
struct StoringDevice {
  replay::TemporaryDirectory directory;
  SimulatedLibrary device{std::make_shared<platform::linuxos::SQLitePersistentContainerFactory>(
      directory.path() / "data")};
};

template <std::size_t count>
void rebuildRaw(benchmark::State& state) {
  static RawStore store;
  for (auto _ : state) store.rebuild(orders<count>()->list());
  state.SetItemsProcessed(static_cast<std::int64_t>(count) * state.iterations());
}

template <std::size_t count>
void rebuild(benchmark::State& state) {
  static StoringDevice storing;
  for (auto _ : state) {
    bool isStored = false;
    SyncOrdersOperation(
        storing.device.library.context(), [] { return orders<count>(); },
        [&isStored](const auto&, const ErrorPtr& error) { isStored = !error; })
        .main();
    if (!isStored) return state.SkipWithError("the orders could not be stored");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(count) * state.iterations());
}

const TimeRow kRebuild{"rebuild the store, each of 10,000 orders", &rebuildRaw<10'000>,
                       &rebuild<10'000>, 1.25, Clock::processor};
/// Of few orders most of the time is the commit's, which the processor does not see, and which no
/// two runs have alike: there is no ratio to hold it to.
const TimeRow kCommit{"rebuild the store with its commit, each of 100 orders", &rebuild<100>,
                      200us};
const TimeRow kGrowth{"rebuild, each of 1,000 orders to 100", &rebuild<100>, &rebuild<1'000>, 1.5,
                      Clock::processor};
const TimeRow kGrowth2{"rebuild, each of 100,000 orders to 1,000", &rebuild<1'000>,
                       &rebuild<100'000>, 1.5, Clock::processor};

}  // namespace
}  // namespace ovinta::bench
