#pragma once

#include <simdjson.h>

namespace ovinta::platform::portable {

/// A JSON parser with its working memory, lent for as long as this object lives. Any thread may
/// have one at any moment, while the process ends too.
class JSONParserLease {
 public:
  JSONParserLease();
  ~JSONParserLease();

  JSONParserLease(const JSONParserLease&) = delete;
  JSONParserLease& operator=(const JSONParserLease&) = delete;

  simdjson::dom::parser* operator->() const { return parser_; }

 private:
  simdjson::dom::parser* const parser_;
};

}  // namespace ovinta::platform::portable
