#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Export.h"

namespace ovinta::platform {

enum class AttributeType { integer64, string };

struct AttributeDescription {
  std::string name;
  AttributeType type = AttributeType::string;
  bool optional = false;

  friend bool operator==(const AttributeDescription&, const AttributeDescription&) = default;
};

struct EntityDescription {
  std::string name;
  std::vector<AttributeDescription> attributes;

  friend bool operator==(const EntityDescription&, const EntityDescription&) = default;
};

/// The entities that an object store can hold.
struct OVINTA_EXPORT ManagedObjectModel {
  std::vector<EntityDescription> entities;

  /// Reads the compiled form of a model; absent when it is malformed. The form is a JSON text:
  /// {"entities": [{"name": text, "attributes": [{"name": text, "type": "integer64" or "string",
  /// "optional": boolean}]}]}.
  static std::optional<ManagedObjectModel> parse(std::string_view compiled);

  /// The entity of that name, or null.
  const EntityDescription* entity(std::string_view name) const;
};

/// An attribute's value; absent for none.
using AttributeValue = std::variant<std::monostate, std::int64_t, std::string>;

/// A record of an object store: the name of its entity and the values of its attributes. A plain
/// value of one thread at a time.
class OVINTA_EXPORT ManagedObject {
 public:
  explicit ManagedObject(std::string entityName) : entityName_(std::move(entityName)) {}
  virtual ~ManagedObject() = default;

  const std::string& entityName() const { return entityName_; }
  void setValue(std::string_view attribute, AttributeValue value);
  /// The value set; absent when none was.
  AttributeValue value(std::string_view attribute) const;

 private:
  std::string entityName_;
  std::map<std::string, AttributeValue, std::less<>> values_;
};

/// Asks for all records of an entity, in no particular order.
struct FetchRequest {
  std::string entityName;
};

/// What went wrong in an object store.
struct StoreError {
  std::string localizedDescription;
  /// Details by name.
  std::map<std::string, std::string> userInfo;
};

/// A transaction on an object store. Used by one thread at a time. What was done through it becomes
/// visible to others, and permanent, as a whole when it is saved; dropped unsaved, it leaves no
/// trace, and so does a process that dies before the save has returned.
class ManagedObjectContext {
 public:
  virtual ~ManagedObjectContext() = default;

  /// Deletes every stored record that the request matches. Blocks; absent on success.
  virtual std::optional<StoreError> executeBatchDelete(const FetchRequest& request) = 0;

  /// Has the next save store the object, with the values that it then has.
  virtual void insert(std::shared_ptr<const ManagedObject> object) = 0;

  /// Writes everything and ends the transaction. Blocks; absent on success. After an error nothing
  /// was changed.
  virtual std::optional<StoreError> save() = 0;

  /// The stored records, those inserted but unsaved not among them; empty with an error written to
  /// `error` when the store cannot be read. Blocks.
  virtual std::vector<ManagedObject> fetch(const FetchRequest& request, StoreError* error) = 0;
};

/// Describes a store that was loaded.
struct PersistentStoreDescription {
  std::string location;
};

/// Owns the stores of a model. May be used from any thread.
class PersistentContainer {
 public:
  virtual ~PersistentContainer() = default;

  /// Opens the store, making it if there is none. Calls the completion once, before it returns,
  /// with the error or absent.
  virtual void loadPersistentStores(
      const std::function<void(const PersistentStoreDescription&, std::optional<StoreError>)>&
          completion) = 0;

  virtual std::vector<PersistentStoreDescription> persistentStoreDescriptions() const = 0;

  /// A new transaction, independent of all others; `loadPersistentStores` must have succeeded. The
  /// container must outlive it.
  virtual std::unique_ptr<ManagedObjectContext> newBackgroundContext() = 0;
};

/// Makes persistent containers.
class PersistentContainerFactory {
 public:
  virtual ~PersistentContainerFactory() = default;

  /// A container with its stores not yet loaded; its store is named `name`. May be called from any
  /// thread.
  virtual std::shared_ptr<PersistentContainer> makeContainer(std::string_view name,
                                                             ManagedObjectModel model) = 0;
};

}  // namespace ovinta::platform
