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

SQLiteStoreConnection::Statements& SQLiteStoreConnection::statements(std::string_view name) {
  if (recent_ && recent_->first == name) return recent_->second;
  const EntityDescription& described = entity(name);
  auto known = statements_.find(described.name);
  if (known == statements_.end()) {
    Statements made{namesOf(described),
                    {},
                    {*database_, "DELETE FROM " + quotedIdentifier(described.name)},
                    {*database_, insertStatement(described)},
                    {*database_, selectStatement(described)}};
    known = statements_.emplace(described.name, std::move(made)).first;
  }
  recent_ = &*known;
  return recent_->second;
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
