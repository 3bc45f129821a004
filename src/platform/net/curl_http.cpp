#include "platform/net/curl_http.h"

#include <curl/curl.h>

#include <memory>

namespace orv {
namespace {

constexpr int kDownloadFailed = 275;
// A country list is a few hundred kilobytes; anything far beyond is not one.
constexpr std::size_t kMaxBody = 64 * 1024 * 1024;

struct CurlDeleter {
    void operator()(CURL* c) const { curl_easy_cleanup(c); }
};

std::size_t collect(char* data, std::size_t size, std::size_t count, void* user) {
    auto* body = static_cast<std::string*>(user);
    const std::size_t n = size * count;
    if (body->size() + n > kMaxBody)
        return 0; // makes curl stop with a write error
    body->append(data, n);
    return n;
}

} // namespace

Result<std::string> CurlHttpGetter::get(const std::string& url) {
    std::unique_ptr<CURL, CurlDeleter> curl(curl_easy_init());
    if (!curl)
        return refuse(kDownloadFailed, {}, "curl_easy_init failed");
    std::string body;
    char error[CURL_ERROR_SIZE] = {0};
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_MAXREDIRS, 5L);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, timeout_);
    curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT, 20L);
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, &collect);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, error);
    curl_easy_setopt(curl.get(), CURLOPT_FAILONERROR, 1L);
    const CURLcode rc = curl_easy_perform(curl.get());
    if (rc != CURLE_OK)
        return refuse(kDownloadFailed, {}, error[0] ? error : curl_easy_strerror(rc));
    return body;
}

} // namespace orv
