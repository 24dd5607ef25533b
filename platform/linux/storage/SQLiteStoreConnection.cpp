#include "platform/linux/storage/SQLiteStoreConnection.h"

#include <sqlite3.h>

#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/linux/storage/SQLiteFile.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr std::chrono::milliseconds kBusyTimeout{5000};

std::string quotedIdentifier(std::string_view identifier) {
  std::string result = "\"";
  for (const char character : identifier) {
    if (character == '"') result.push_back('"');
    result.push_back(character);
  }
  return result + "\"";
}

std::string createStatement(const EntityDescription& entity) {
  std::string columns;
  for (const auto& attribute : entity.attributes) {
    if (!columns.empty()) columns += ", ";
    columns += quotedIdentifier(attribute.name);
    columns += attribute.type == AttributeType::integer64 ? " INTEGER" : " TEXT";
    if (!attribute.optional) columns += " NOT NULL";
  }
  return "CREATE TABLE " + quotedIdentifier(entity.name) + "(" + columns + ") STRICT";
}

std::string insertStatement(const EntityDescription& entity) {
  std::string columns;
  std::string places;
  for (const auto& attribute : entity.attributes) {
    columns += (columns.empty() ? "" : ", ") + quotedIdentifier(attribute.name);
    places += places.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + quotedIdentifier(entity.name) + "(" + columns + ") VALUES(" + places +
         ")";
}

std::string selectStatement(const EntityDescription& entity) {
  std::string columns;
  for (const auto& attribute : entity.attributes) {
    columns += (columns.empty() ? "" : ", ") + quotedIdentifier(attribute.name);
  }
  return "SELECT " + columns + " FROM " + quotedIdentifier(entity.name);
}

AttributeNames namesOf(const EntityDescription& entity) {
  auto names = std::make_shared<std::vector<std::string>>();
  for (const auto& attribute : entity.attributes) names->push_back(attribute.name);
  return names;
}

/// The value must stay until the statement has been carried out.
void bindValue(SQLite::Statement& statement, int place, const AttributeValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    statement.bind(place, *integer);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    statement.bindNoCopy(place, *text);
  } else {
    statement.bind(place);
  }
}

AttributeValue readValue(const SQLite::Column& column) {
  if (column.isNull()) return {};
  if (column.isInteger()) return column.getInt64();
  return column.getString();
}

/// Leaves the statement ready for its next use, however the use at hand ends.
class ResetAfterUse {
 public:
  explicit ResetAfterUse(SQLite::Statement& statement) : statement_(statement) {}
  ~ResetAfterUse() { statement_.tryReset(); }
  ResetAfterUse(const ResetAfterUse&) = delete;
  ResetAfterUse& operator=(const ResetAfterUse&) = delete;

 private:
  SQLite::Statement& statement_;
};

}  // namespace

SQLiteStoreConnection::SQLiteStoreConnection(const std::filesystem::path& file,
                                             ManagedObjectModel model)
    : model_(std::move(model)), database_(openSQLiteFile(file, kBusyTimeout)) {}

void SQLiteStoreConnection::prepareTables() {
  SQLiteTables expected;
  for (const auto& entity : model_.entities) expected.emplace(entity.name, createStatement(entity));
  linuxos::prepareTables(*database_, expected);
}

void SQLiteStoreConnection::begin() { database_->exec("BEGIN IMMEDIATE"); }

void SQLiteStoreConnection::commit() { database_->exec("COMMIT"); }

void SQLiteStoreConnection::rollback() noexcept { database_->tryExec("ROLLBACK"); }

const EntityDescription& SQLiteStoreConnection::entity(std::string_view name) const {
  const auto* found = model_.entity(name);
  if (!found) throw std::invalid_argument("the model has no entity " + std::string(name));
  return *found;
}

SQLiteStoreConnection::Statements& SQLiteStoreConnection::statements(
    const EntityDescription& entity) {
  const auto found = statements_.find(entity.name);
  if (found != statements_.end()) return found->second;
  return statements_
      .emplace(entity.name, Statements{namesOf(entity),
                                       {},
                                       {*database_, "DELETE FROM " + quotedIdentifier(entity.name)},
                                       {*database_, insertStatement(entity)},
                                       {*database_, selectStatement(entity)}})
      .first->second;
}

void SQLiteStoreConnection::deleteAll(std::string_view name) {
  auto& statement = statements(entity(name)).deleteAll;
  const ResetAfterUse reset(statement);
  statement.exec();
}

void SQLiteStoreConnection::insert(const ManagedObject& object) {
  Statements& known = statements(entity(object.entityName()));
  const ResetAfterUse reset(known.insert);
  const AttributeNames& names = object.attributeNames();
  if (known.insertedNames != names && *known.names == *names) known.insertedNames = names;
  const bool isInPlace = known.insertedNames == names;
  for (std::size_t place = 0; place < known.names->size(); ++place) {
    bindValue(known.insert, static_cast<int>(place) + 1,
              isInPlace ? object.valueAt(place) : object.value((*known.names)[place]));
  }
  known.insert.exec();
}

std::vector<ManagedObject> SQLiteStoreConnection::readAll(std::string_view name) {
  const auto& description = entity(name);
  Statements& known = statements(description);
  const ResetAfterUse reset(known.readAll);
  std::vector<ManagedObject> objects;
  while (known.readAll.executeStep()) {
    auto& object = objects.emplace_back(description.name, known.names);
    int column = 0;
    for (const std::string& attribute : *known.names) {
      object.setValue(attribute, readValue(known.readAll.getColumn(column++)));
    }
  }
  return objects;
}

StoreError makeStoreError(std::string_view action, const std::exception& failure,
                          const std::filesystem::path& file) {
  StoreError error{std::string(action) + ": " + failure.what(), {{"path", file.string()}}};
  if (const auto* database = dynamic_cast<const SQLite::Exception*>(&failure)) {
    error.userInfo["domain"] = "SQLite";
    error.userInfo["code"] = std::to_string(database->getErrorCode());
  } else if (const auto* system = dynamic_cast<const std::system_error*>(&failure)) {
    error.userInfo["domain"] = "POSIX";
    error.userInfo["code"] = std::to_string(system->code().value());
  }
  return error;
}

}  // namespace ovinta::platform::linuxos
