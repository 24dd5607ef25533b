#pragma once

#include <curl/curl.h>

#include <concepts>
#include <type_traits>

namespace ovinta::platform::linuxos {

/// Sets the options of one request and keeps the first refusal: a request must not be sent unless
/// all that it relies on holds, its limits and its demands on the other side included.
class CurlOptions {
 public:
  explicit CurlOptions(CURL* handle) : handle_(handle) {}

  /// libcurl takes whatever type it is given for the one that the option has; literals need their
  /// suffix. After a refusal nothing more is set.
  template <typename Value>
  requires std::same_as<Value, long> || std::same_as<Value, curl_off_t> ||
      std::is_pointer_v<Value> || std::is_null_pointer_v<Value>
  void set(CURLoption option, Value value) {
    if (refusal_ == CURLE_OK) refusal_ = curl_easy_setopt(handle_, option, value);
  }

  /// CURLE_OK: everything has been set.
  CURLcode refusal() const { return refusal_; }

 private:
  CURL* const handle_;
  CURLcode refusal_ = CURLE_OK;
};

}  // namespace ovinta::platform::linuxos
