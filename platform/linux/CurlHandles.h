#pragma once

#include <curl/curl.h>

#include <memory>

namespace velmor {

/// Lets go of libcurl's handles.
struct CurlCleanup {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
/// libcurl's other handles have one type in common, so each needs a record of its own.
struct CurlEasyCleanup {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct CurlMultiCleanup {
  void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};

using CurlUrlHandle = std::unique_ptr<CURLU, CurlCleanup>;
using CurlHeaderList = std::unique_ptr<curl_slist, CurlCleanup>;
using CurlEasyHandle = std::unique_ptr<CURL, CurlEasyCleanup>;
using CurlMultiHandle = std::unique_ptr<CURLM, CurlMultiCleanup>;

} // namespace velmor
