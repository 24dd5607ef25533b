#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/PersistentContainer.h"
#include "platform/linux/storage/SQLiteStoreConnection.h"

namespace ovinta::platform::linuxos {

/// A container with one store, a SQLite file. Connections are kept open between contexts, since
/// opening one costs far more than using it.
class SQLitePersistentContainer : public PersistentContainer {
 public:
  /// Opens nothing yet. Without a file, loading the store fails.
  SQLitePersistentContainer(std::optional<std::filesystem::path> file, ManagedObjectModel model);

  void loadPersistentStores(
      const std::function<void(const PersistentStoreDescription&, std::optional<StoreError>)>&
          completion) override;
  std::vector<PersistentStoreDescription> persistentStoreDescriptions() const override;
  std::unique_ptr<ManagedObjectContext> newBackgroundContext() override;

  const std::filesystem::path& file() const { return file_; }
  /// An open connection, for the caller alone. Throws as the connection's constructor does.
  std::unique_ptr<SQLiteStoreConnection> takeConnection();
  /// Takes back a connection that has no transaction in progress.
  void giveBack(std::unique_ptr<SQLiteStoreConnection> connection);

 private:
  const bool hasFile_;
  const std::filesystem::path file_;
  const ManagedObjectModel model_;
  std::mutex mutex_;
  std::vector<std::unique_ptr<SQLiteStoreConnection>> idle_;
};

/// Makes containers whose stores are files `<name>.sqlite` in one directory.
class SQLitePersistentContainerFactory : public PersistentContainerFactory {
 public:
  explicit SQLitePersistentContainerFactory(std::optional<std::filesystem::path> directory);

  std::shared_ptr<PersistentContainer> makeContainer(std::string_view name,
                                                     ManagedObjectModel model) override;

 private:
  const std::optional<std::filesystem::path> directory_;
};

}  // namespace ovinta::platform::linuxos
