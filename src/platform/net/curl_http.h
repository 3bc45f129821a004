#pragma once

#include <string>

#include "core/reference/country_download.h"

namespace orv {

// HTTP(S) GET with libcurl. Follows redirects, gives up after `timeoutSeconds`,
// and takes any status of 400 or above as a failure.
class CurlHttpGetter final : public HttpGetter {
public:
    explicit CurlHttpGetter(long timeoutSeconds = 60) : timeout_(timeoutSeconds) {}
    Result<std::string> get(const std::string& url) override;

private:
    long timeout_;
};

} // namespace orv
