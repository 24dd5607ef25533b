#include "platform/JSON.h"

namespace ovinta::platform {

CodingError::CodingError(Kind kind, std::string debugDescription)
    : kind_(kind), debugDescription_(std::move(debugDescription)) {
  updateText();
}

void CodingError::prependKey(std::string_view key) {
  if (!codingPath_.empty() && codingPath_.front() != '[') codingPath_.insert(0, 1, '.');
  codingPath_.insert(0, key);
  updateText();
}

void CodingError::prependIndex(std::size_t index) {
  std::string position = "[";
  position += std::to_string(index);
  position += ']';
  prependKey(position);
}

void CodingError::updateText() {
  text_ = name(kind_);
  if (!codingPath_.empty()) text_ += " at " + codingPath_;
  if (!debugDescription_.empty()) text_ += ": " + debugDescription_;
}

}  // namespace ovinta::platform
