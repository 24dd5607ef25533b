#pragma once

#include <unicode/timezone.h>

namespace ovinta::platform::linuxos {

/// Makes a zone the process's default one for as long as it lives.
class ScopedDefaultZone {
 public:
  explicit ScopedDefaultZone(const char* id) : previous_(icu::TimeZone::createDefault()) {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(icu::UnicodeString(id)));
  }
  ~ScopedDefaultZone() { icu::TimeZone::adoptDefault(previous_); }

 private:
  icu::TimeZone* previous_;
};

}  // namespace ovinta::platform::linuxos
