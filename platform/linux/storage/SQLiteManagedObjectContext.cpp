#include "platform/linux/storage/SQLiteManagedObjectContext.h"

#include <exception>
#include <utility>

#include "platform/linux/storage/SQLitePersistentContainer.h"

namespace ovinta::platform::linuxos {

SQLiteManagedObjectContext::SQLiteManagedObjectContext(SQLitePersistentContainer& container)
    : container_(container) {}

SQLiteManagedObjectContext::~SQLiteManagedObjectContext() {
  if (!connection_) return;
  if (inTransaction_) connection_->rollback();
  container_.giveBack(std::move(connection_));
}

SQLiteStoreConnection& SQLiteManagedObjectContext::connection() {
  if (!connection_) connection_ = container_.takeConnection();
  return *connection_;
}

void SQLiteManagedObjectContext::beginIfNeeded() {
  if (inTransaction_) return;
  connection().begin();
  inTransaction_ = true;
}

/// Closes the connection, which rolls the transaction back, instead of lending to others what has
/// just failed.
void SQLiteManagedObjectContext::abandon() {
  connection_.reset();
  inTransaction_ = false;
  inserted_.clear();
}

template <class Step>
std::optional<StoreError> SQLiteManagedObjectContext::attempt(std::string_view action,
                                                              const Step& step) {
  if (failure_) return failure_;
  try {
    step();
  } catch (const std::exception& failure) {
    failure_ = makeStoreError(action, failure, container_.file());
    abandon();
  }
  return failure_;
}

std::optional<StoreError> SQLiteManagedObjectContext::executeBatchDelete(
    const FetchRequest& request) {
  return attempt("The records could not be deleted", [&] {
    beginIfNeeded();
    connection().deleteAll(request.entityName);
  });
}

void SQLiteManagedObjectContext::insert(std::shared_ptr<const ManagedObject> object) {
  inserted_.push_back(std::move(object));
}

std::optional<StoreError> SQLiteManagedObjectContext::save() {
  return attempt("The records could not be saved", [&] {
    if (!inserted_.empty()) beginIfNeeded();
    for (const auto& object : inserted_) connection().insert(*object);
    if (inTransaction_) connection().commit();
    inTransaction_ = false;
    inserted_.clear();
  });
}

Expected<std::vector<ManagedObject>, StoreError> SQLiteManagedObjectContext::fetch(
    const FetchRequest& request) {
  std::vector<ManagedObject> objects;
  auto failed = attempt("The records could not be read",
                        [&] { objects = connection().readAll(request.entityName); });
  if (failed) return *std::move(failed);
  return objects;
}

}  // namespace ovinta::platform::linuxos
