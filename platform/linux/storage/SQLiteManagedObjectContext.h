#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/PersistentContainer.h"
#include "platform/linux/storage/SQLiteStoreConnection.h"

namespace ovinta::platform::linuxos {

class SQLitePersistentContainer;

/// A transaction on a SQLite store. It takes a connection from the container when it first needs
/// one. Once a step has failed all later ones report the same error, so that half of what was meant
/// is never saved.
class SQLiteManagedObjectContext : public ManagedObjectContext {
 public:
  explicit SQLiteManagedObjectContext(SQLitePersistentContainer& container);
  ~SQLiteManagedObjectContext() override;

  std::optional<StoreError> executeBatchDelete(const FetchRequest& request) override;
  void insert(std::shared_ptr<const ManagedObject> object) override;
  std::optional<StoreError> save() override;
  Expected<std::vector<ManagedObject>, StoreError> fetch(const FetchRequest& request) override;

 private:
  SQLiteStoreConnection& connection();
  void beginIfNeeded();
  void abandon();
  template <class Step>
  std::optional<StoreError> attempt(std::string_view action, const Step& step);

  SQLitePersistentContainer& container_;
  std::unique_ptr<SQLiteStoreConnection> connection_;
  bool inTransaction_ = false;
  std::vector<std::shared_ptr<const ManagedObject>> inserted_;
  std::optional<StoreError> failure_;
};

}  // namespace ovinta::platform::linuxos
