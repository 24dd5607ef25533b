#pragma once

#include <curl/curl.h>

#include <memory>

namespace ovinta::platform::linuxos {

template <auto kFree>
struct CurlDeleter {
  template <typename T>
  void operator()(T* handle) const {
    kFree(handle);
  }
};

using CurlEasy = std::unique_ptr<CURL, CurlDeleter<&curl_easy_cleanup>>;
using CurlMulti = std::unique_ptr<CURLM, CurlDeleter<&curl_multi_cleanup>>;
using CurlShare = std::unique_ptr<CURLSH, CurlDeleter<&curl_share_cleanup>>;
using CurlURL = std::unique_ptr<CURLU, CurlDeleter<&curl_url_cleanup>>;
using CurlList = std::unique_ptr<curl_slist, CurlDeleter<&curl_slist_free_all>>;
using CurlString = std::unique_ptr<char, CurlDeleter<&curl_free>>;

}  // namespace ovinta::platform::linuxos
