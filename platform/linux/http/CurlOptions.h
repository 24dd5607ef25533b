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

  /// Sets an option; after a refusal nothing more is set. libcurl takes the value for the type that
  /// the option has, whatever type it is given, so literals need their suffix.
  template <typename Value>
  requires std::same_as<Value, long> || std::same_as<Value, curl_off_t> ||
      std::is_pointer_v<Value> || std::is_null_pointer_v<Value>
  void set(CURLoption option, Value value) {
    if (refusal_ == CURLE_OK) refusal_ = curl_easy_setopt(handle_, option, value);
  }

  /// The first refusal; CURLE_OK when every option has been set.
  CURLcode refusal() const { return refusal_; }

 private:
  CURL* const handle_;
  CURLcode refusal_ = CURLE_OK;
};

}  // namespace ovinta::platform::linuxos
