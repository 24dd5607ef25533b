#pragma once

#include "platform/Text.h"

namespace ovinta::platform::linuxos {

/// Text rules by ICU's character database. A word is what stands between white space.
class ICUText : public Text {
 public:
  bool isUppercaseLetter(char32_t scalar) const override;
  std::string capitalized(std::string_view text) const override;
  std::optional<double> decimal(std::string_view text) const override;
};

}  // namespace ovinta::platform::linuxos
