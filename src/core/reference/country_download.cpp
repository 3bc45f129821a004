#include "core/reference/country_download.h"

namespace orv {

Result<CountryTables> downloadCountryList(HttpGetter& http, const std::string& url,
                                          const std::filesystem::path& dbPath) {
    auto body = http.get(url);
    if (!body)
        return body.failure();
    return importCountryText(dbPath, body.value(), CountryFormat::CtyDat);
}

} // namespace orv
