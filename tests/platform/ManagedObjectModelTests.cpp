#include <gmock/gmock.h>

#include <string>

#include "platform/PersistentContainer.h"

namespace ovinta::platform {
namespace {

TEST(ManagedObjectModelTest, RefusesMalformedModels) {
  const auto entities = [](const std::string& list) { return "{\"entities\": [" + list + "]}"; };
  const auto attribute = [&](const std::string& fields) {
    return entities(R"({"name": "E", "attributes": [{)" + fields + "}]}");
  };
  const std::string good = R"("name": "a", "type": "string", "optional": true)";
  const auto model = ManagedObjectModel::parse(attribute(good));
  ASSERT_TRUE(model);
  EXPECT_NE(model->entity("E"), nullptr);
  EXPECT_EQ(model->entity("e"), nullptr);
  EXPECT_TRUE(ManagedObjectModel::parse(entities("")));
  const std::string malformed[] = {
      "",
      "[]",
      "{}",
      R"({"entities": {}})",
      entities("1"),
      entities(R"({"name": "E", "attributes": []})"),
      attribute(""),
      attribute(R"("name": "a", "type": "double", "optional": true)"),
      attribute(R"("name": "a", "type": "string", "optional": 1)"),
      entities(R"({"name": "E", "attributes": [{)" + good +
               R"(}]}, {"name": "E", "attributes": [{)" + good + "}]}"),
  };
  for (const auto& text : malformed) EXPECT_FALSE(ManagedObjectModel::parse(text)) << text;
}

}  // namespace
}  // namespace ovinta::platform
