#pragma once

#include <limits>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Date.h"

/// Reading values out of an XML document with errors that name their place. For inside use.
namespace ovinta::platform::simulation::xml {

/// Thrown when a text is not what it should be.
struct Malformed {
  std::string message;
  /// The place in the document; empty for nowhere in particular.
  pugi::xml_node node;
};

/// The name without its prefix.
std::string_view localName(pugi::xml_node node);

/// The namespace that the node's prefix stands for; empty for none. An element with more attributes
/// than any file needs is an error: each look-up goes through those of all elements around the
/// node.
std::string_view namespaceName(pugi::xml_node node);

/// The children that are elements of that local name.
std::vector<pugi::xml_node> children(pugi::xml_node parent, std::string_view name);

/// The first child that is an element of that local name, or the empty node.
pugi::xml_node child(pugi::xml_node parent, std::string_view name);

struct Range {
  double lowest = -std::numeric_limits<double>::max();
  double highest = std::numeric_limits<double>::max();
};

/// The number that the text stands for; `name` says what it is in the error.
double number(std::string_view text, std::string_view name, Range range, pugi::xml_node place);

/// The number in the attribute; an absent one gives the fallback or, without one, is an error.
double numberAttribute(pugi::xml_node node, const char* name, Range range,
                       std::optional<double> fallback = {});

/// The instant of an ISO 8601 text such as 2026-03-14T15:00:00.5Z; without a zone it is UTC.
Date instant(std::string_view text, pugi::xml_node place);

}  // namespace ovinta::platform::simulation::xml
