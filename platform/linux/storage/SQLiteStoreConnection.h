#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/PersistentContainer.h"

namespace ovinta::platform::linuxos {

/// One connection to an object store, with its prepared statements. An entity is a table, an
/// attribute a column of it. For one thread at a time. Methods throw `SQLite::Exception`,
/// `std::system_error`, or `std::invalid_argument` for an entity that the model does not have.
class SQLiteStoreConnection {
 public:
  SQLiteStoreConnection(const std::filesystem::path& file, ManagedObjectModel model);

  /// Makes the tables in an empty database; throws when it holds other tables than the model's.
  void prepareTables();

  void begin();
  void commit();
  /// Undoes the transaction that is open; no effect when none is.
  void rollback() noexcept;

  void deleteAll(std::string_view entity);
  void insert(const ManagedObject& object);
  std::vector<ManagedObject> readAll(std::string_view entity);

 private:
  /// What serves one entity.
  struct Statements {
    /// The names of the entity's attributes, which objects read from the store have their values
    /// by.
    AttributeNames names;
    /// The names by which the objects inserted last had theirs, where these are the same.
    AttributeNames insertedNames;
    SQLite::Statement deleteAll;
    SQLite::Statement insert;
    SQLite::Statement readAll;
  };

  const EntityDescription& entity(std::string_view name) const;
  Statements& statements(std::string_view entity);

  ManagedObjectModel model_;
  std::unique_ptr<SQLite::Database> database_;
  std::map<std::string, Statements, std::less<>> statements_;
  /// Those that served last, which the next record mostly takes again.
  std::pair<const std::string, Statements>* recent_ = nullptr;
};

/// The error as the object store's interface reports it: what was tried and failed, with the
/// details "path", "domain" ("SQLite" or "POSIX") and "code" where they are known.
StoreError makeStoreError(std::string_view action, const std::exception& failure,
                          const std::filesystem::path& file);

}  // namespace ovinta::platform::linuxos
