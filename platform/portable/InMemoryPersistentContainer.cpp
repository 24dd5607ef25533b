#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

#include "platform/PersistentContainer.h"
#include "platform/portable/Portable.h"

namespace ovinta::platform::portable {
namespace {

/// The records of one store.
struct Store {
  std::mutex mutex;
  std::vector<ManagedObject> objects;
};

bool fits(const ManagedObject& object, const AttributeDescription& attribute) {
  const AttributeValue& value = object.value(attribute.name);
  if (std::holds_alternative<std::monostate>(value)) return attribute.optional;
  return attribute.type == AttributeType::integer64 ? std::holds_alternative<std::int64_t>(value)
                                                    : std::holds_alternative<std::string>(value);
}

class InMemoryContext : public ManagedObjectContext {
 public:
  InMemoryContext(std::shared_ptr<Store> store, std::shared_ptr<const ManagedObjectModel> model)
      : store_(std::move(store)), model_(std::move(model)) {}

  std::optional<StoreError> executeBatchDelete(const FetchRequest& request) override {
    if (!failure_) failure_ = check(request.entityName);
    if (!failure_) deleted_.push_back(request.entityName);
    return failure_;
  }

  void insert(std::shared_ptr<const ManagedObject> object) override {
    inserted_.push_back(std::move(object));
  }

  std::optional<StoreError> save() override {
    for (const auto& object : inserted_) {
      if (!failure_) failure_ = check(*object);
    }
    if (failure_) return failure_;
    const std::lock_guard lock(store_->mutex);
    std::erase_if(store_->objects, [this](const auto& object) { return isDeleted(object); });
    for (const auto& object : inserted_) store_->objects.push_back(*object);
    deleted_.clear();
    inserted_.clear();
    return std::nullopt;
  }

  Expected<std::vector<ManagedObject>, StoreError> fetch(const FetchRequest& request) override {
    if (!failure_) failure_ = check(request.entityName);
    if (failure_) return *failure_;
    std::vector<ManagedObject> found;
    const std::lock_guard lock(store_->mutex);
    std::copy_if(store_->objects.begin(), store_->objects.end(), std::back_inserter(found),
                 [&](const auto& object) {
                   return object.entityName() == request.entityName && !isDeleted(object);
                 });
    return found;
  }

 private:
  std::optional<StoreError> check(const std::string& entityName) const {
    if (model_->entity(entityName)) return std::nullopt;
    return StoreError{"The model has no entity " + entityName, {}};
  }

  std::optional<StoreError> check(const ManagedObject& object) const {
    if (auto error = check(object.entityName())) return error;
    for (const auto& attribute : model_->entity(object.entityName())->attributes) {
      if (!fits(object, attribute)) {
        return StoreError{"The value is missing or of another type: " + attribute.name, {}};
      }
    }
    return std::nullopt;
  }

  bool isDeleted(const ManagedObject& object) const {
    return std::find(deleted_.begin(), deleted_.end(), object.entityName()) != deleted_.end();
  }

  const std::shared_ptr<Store> store_;
  const std::shared_ptr<const ManagedObjectModel> model_;
  /// The entities whose records the next save deletes.
  std::vector<std::string> deleted_;
  std::vector<std::shared_ptr<const ManagedObject>> inserted_;
  /// The first error.
  std::optional<StoreError> failure_;
};

class InMemoryContainer : public PersistentContainer {
 public:
  InMemoryContainer(std::string_view name, std::shared_ptr<Store> store, ManagedObjectModel model)
      : description_{"memory:" + std::string(name)},
        store_(std::move(store)),
        model_(std::make_shared<const ManagedObjectModel>(std::move(model))) {}

  void loadPersistentStores(
      const std::function<void(const PersistentStoreDescription&, std::optional<StoreError>)>&
          completion) override {
    completion(description_, std::nullopt);
  }

  std::vector<PersistentStoreDescription> persistentStoreDescriptions() const override {
    return {description_};
  }

  std::unique_ptr<ManagedObjectContext> newBackgroundContext() override {
    return std::make_unique<InMemoryContext>(store_, model_);
  }

 private:
  const PersistentStoreDescription description_;
  const std::shared_ptr<Store> store_;
  const std::shared_ptr<const ManagedObjectModel> model_;
};

class InMemoryContainerFactory : public PersistentContainerFactory {
 public:
  std::shared_ptr<PersistentContainer> makeContainer(std::string_view name,
                                                     ManagedObjectModel model) override {
    const std::lock_guard lock(mutex_);
    auto& store = stores_[std::string(name)];
    if (!store) store = std::make_shared<Store>();
    return std::make_shared<InMemoryContainer>(name, store, std::move(model));
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Store>> stores_;
};

}  // namespace

std::shared_ptr<PersistentContainerFactory> makeInMemoryPersistentContainerFactory() {
  return std::make_shared<InMemoryContainerFactory>();
}

}  // namespace ovinta::platform::portable
