#include "cli/client/HumanText.h"

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

bool isNested(const Value& value) { return value.as<Dictionary>() || value.as<List>(); }

void append(std::string& text, const Value& value, const std::string& indent) {
  if (const auto* fields = value.as<Dictionary>()) {
    for (const auto& [name, field] : *fields) {
      text += indent + name + ":";
      if (isNested(field)) {
        text += "\n";
        append(text, field, indent + "  ");
      } else {
        text += " " + scalarText(field) + "\n";
      }
    }
  } else if (const auto* list = value.as<List>()) {
    if (list->empty()) text += indent + "(none)\n";
    const char* separator = "";
    for (const Value& element : *list) {
      text += separator;
      append(text, element, indent);
      separator = isNested(element) ? "\n" : "";
    }
  } else {
    text += indent + scalarText(value) + "\n";
  }
}

}  // namespace

std::string scalarText(const Value& value) {
  if (const auto* text = value.as<std::string>()) return *text;
  return platform::writeJSON(value);
}

std::string humanText(const Value& value) {
  std::string text;
  append(text, value, "");
  return text;
}

}  // namespace ovinta::cli
