#include "platform/linux/storage/SQLitePersistentContainer.h"

#include <exception>
#include <utility>

#include "platform/linux/storage/SQLiteManagedObjectContext.h"

namespace ovinta::platform::linuxos {

SQLitePersistentContainer::SQLitePersistentContainer(std::optional<std::filesystem::path> file,
                                                     ManagedObjectModel model)
    : hasFile_(file.has_value()),
      file_(std::move(file).value_or(std::filesystem::path())),
      model_(std::move(model)) {}

void SQLitePersistentContainer::loadPersistentStores(
    const std::function<void(const PersistentStoreDescription&, std::optional<StoreError>)>&
        completion) {
  std::optional<StoreError> error;
  if (!hasFile_) {
    error = StoreError{"The store could not be opened: the user has no home directory", {}};
  } else {
    try {
      auto connection = takeConnection();
      connection->prepareTables();
      giveBack(std::move(connection));
    } catch (const std::exception& failure) {
      error = makeStoreError("The store could not be opened", failure, file_);
    }
  }
  completion({file_.string()}, std::move(error));
}

std::vector<PersistentStoreDescription> SQLitePersistentContainer::persistentStoreDescriptions()
    const {
  return {{file_.string()}};
}

std::unique_ptr<ManagedObjectContext> SQLitePersistentContainer::newBackgroundContext() {
  return std::make_unique<SQLiteManagedObjectContext>(*this);
}

std::unique_ptr<SQLiteStoreConnection> SQLitePersistentContainer::takeConnection() {
  {
    const std::lock_guard lock(mutex_);
    if (!idle_.empty()) {
      auto connection = std::move(idle_.back());
      idle_.pop_back();
      return connection;
    }
  }
  return std::make_unique<SQLiteStoreConnection>(file_, model_);
}

void SQLitePersistentContainer::giveBack(std::unique_ptr<SQLiteStoreConnection> connection) {
  const std::lock_guard lock(mutex_);
  idle_.push_back(std::move(connection));
}

SQLitePersistentContainerFactory::SQLitePersistentContainerFactory(
    std::optional<std::filesystem::path> directory)
    : directory_(std::move(directory)) {}

std::shared_ptr<PersistentContainer> SQLitePersistentContainerFactory::makeContainer(
    std::string_view name, ManagedObjectModel model) {
  std::optional<std::filesystem::path> file;
  if (directory_) file = *directory_ / std::string(name).append(".sqlite");
  return std::make_shared<SQLitePersistentContainer>(std::move(file), std::move(model));
}

}  // namespace ovinta::platform::linuxos
