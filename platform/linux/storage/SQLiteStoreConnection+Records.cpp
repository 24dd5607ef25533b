// What is done for each record, of which there may be many.
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/linux/storage/SQLiteStoreConnection.h"

namespace ovinta::platform::linuxos {
namespace {

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

void SQLiteStoreConnection::deleteAll(std::string_view name) {
  auto& statement = statements(name).deleteAll;
  const ResetAfterUse reset(statement);
  statement.exec();
}

void SQLiteStoreConnection::insert(const ManagedObject& object) {
  Statements& known = statements(object.entityName());
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
  Statements& known = statements(name);
  const ResetAfterUse reset(known.readAll);
  std::vector<ManagedObject> objects;
  while (known.readAll.executeStep()) {
    auto& object = objects.emplace_back(std::string(name), known.names);
    int column = 0;
    for (const std::string& attribute : *known.names) {
      object.setValue(attribute, readValue(known.readAll.getColumn(column++)));
    }
  }
  return objects;
}

}  // namespace ovinta::platform::linuxos
