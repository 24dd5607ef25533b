#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Expected.h"
#include "Export.h"

namespace ovinta::platform {

/// The type of an attribute's value; see `AttributeValue`.
enum class AttributeType { integer64, string };

/// An attribute that the records of an entity have. A plain value.
struct AttributeDescription {
  /// Tells the attributes of an entity apart; not empty.
  std::string name;
  /// The only type of value that it takes.
  AttributeType type = AttributeType::string;
  /// Whether a record may do without a value.
  bool optional = false;

  friend bool operator==(const AttributeDescription&, const AttributeDescription&) = default;
};

/// One kind of records. A plain value.
struct EntityDescription {
  /// Unique within the model, not empty.
  std::string name;
  /// At least one.
  std::vector<AttributeDescription> attributes;

  friend bool operator==(const EntityDescription&, const EntityDescription&) = default;
};

/// The entities that an object store can hold. A plain value.
struct OVINTA_EXPORT ManagedObjectModel {
  /// In the order of the compiled form.
  std::vector<EntityDescription> entities;

  /// Reads the compiled form of a model; absent when it is malformed. The form is a JSON text:
  /// {"entities": [{"name": text, "attributes": [{"name": text, "type": "integer64" or "string",
  /// "optional": boolean}]}]}. May be called from any thread.
  static std::optional<ManagedObjectModel> parse(std::string_view compiled);

  /// The entity of that name, valid as long as the model is unchanged, or null.
  const EntityDescription* entity(std::string_view name) const;
};

/// An attribute's value; absent for none.
using AttributeValue = std::variant<std::monostate, std::int64_t, std::string>;

/// The names of attributes, which objects that are alike share. A plain value.
using AttributeNames = std::shared_ptr<const std::vector<std::string>>;

/// A record of an object store: the name of its entity and the values of its attributes. A plain
/// value of one thread at a time.
class OVINTA_EXPORT ManagedObject {
 public:
  /// A record without values. The attributes of these names, each of which differs from the others,
  /// have their places from the start; null stands for none.
  explicit ManagedObject(std::string entityName, AttributeNames names = {});
  virtual ~ManagedObject() = default;

  /// The name of an entity of the store's model; not checked here.
  const std::string& entityName() const { return entityName_; }
  /// Gives the attribute a value, in place of an earlier one; an absent value removes it. Not
  /// checked against the model.
  void setValue(std::string_view attribute, AttributeValue value);
  /// The value set; absent when none was. Valid until the object is changed or gone.
  const AttributeValue& value(std::string_view attribute) const;

  /// The attributes that have a place, in the order of their places; never null.
  const AttributeNames& attributeNames() const { return names_; }
  /// The value of the attribute at that place, which must be below the number of the names; absent
  /// when none was set. Valid until the object is changed or gone.
  const AttributeValue& valueAt(std::size_t place) const { return values_[place]; }
  /// Gives the attribute at that place, which must be below the number of the names, a value in
  /// place of an earlier one; an absent value removes it.
  void setValueAt(std::size_t place, AttributeValue value) { values_[place] = std::move(value); }

 private:
  std::string entityName_;
  AttributeNames names_;
  /// One for each of the names.
  std::vector<AttributeValue> values_;
};

/// Asks for all records of an entity, in no particular order. A plain value.
struct FetchRequest {
  /// The name of an entity of the store's model.
  std::string entityName;
};

/// What went wrong in an object store. A plain value.
struct StoreError {
  /// A sentence in English.
  std::string localizedDescription;
  /// Details by name; may be empty.
  std::map<std::string, std::string> userInfo;
};

/// A transaction on an object store. Used by one thread at a time. What was done through it becomes
/// visible to others, and permanent, as a whole when it is saved; dropped unsaved, it leaves no
/// trace, and so does a process that dies before the save has returned. An error is final: whatever
/// is asked afterwards fails with it, and nothing is stored.
class ManagedObjectContext {
 public:
  virtual ~ManagedObjectContext() = default;

  /// Deletes every stored record that the request matches. Blocks; absent on success.
  [[nodiscard]] virtual std::optional<StoreError> executeBatchDelete(
      const FetchRequest& request) = 0;

  /// Has the next save store the object, with the values that it then has.
  virtual void insert(std::shared_ptr<const ManagedObject> object) = 0;

  /// Writes everything and ends the transaction. Blocks; absent on success. After an error nothing
  /// was changed.
  [[nodiscard]] virtual std::optional<StoreError> save() = 0;

  /// The stored records, those inserted but unsaved not among them, or why the store cannot be
  /// read. Blocks.
  virtual Expected<std::vector<ManagedObject>, StoreError> fetch(const FetchRequest& request) = 0;
};

/// Describes a store that was loaded. A plain value.
struct PersistentStoreDescription {
  /// Where the store lies, such as the path of a file.
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

  /// The stores of the container; one at least once they are loaded.
  virtual std::vector<PersistentStoreDescription> persistentStoreDescriptions() const = 0;

  /// A new transaction, independent of all others; `loadPersistentStores` must have succeeded. The
  /// container must outlive it.
  virtual std::unique_ptr<ManagedObjectContext> newBackgroundContext() = 0;
};

/// Makes persistent containers. May be used from any thread.
class PersistentContainerFactory {
 public:
  virtual ~PersistentContainerFactory() = default;

  /// A container with its stores not yet loaded, never null; its store is named `name`.
  virtual std::shared_ptr<PersistentContainer> makeContainer(std::string_view name,
                                                             ManagedObjectModel model) = 0;
};

}  // namespace ovinta::platform
