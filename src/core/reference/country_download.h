#pragma once

#include <filesystem>
#include <string>

#include "core/reference/country_list.h"
#include "core/settings/settings.h"
#include "core/util/result.h"

// Fetching the country list from its server and importing it. Core asks for
// the file through HttpGetter; the platform layer fetches it for real.
namespace orv {

class HttpGetter {
public:
    virtual ~HttpGetter() = default;
    // The body of a successful GET of `url`. A failure (no connection, an
    // HTTP error status, a refused address) is IText(275) with the reason in
    // the detail.
    virtual Result<std::string> get(const std::string& url) = 0;
};

inline constexpr const char* kDefaultCtyDownloadUrl = "https://www.country-files.com/cty/cty.dat";

namespace keys {
// Where the country list is fetched from; a file of the CTY.DAT layout.
inline const StrSetting CTYDownloadURL{"QB-OPTION", "CTYDownloadURL", kDefaultCtyDownloadUrl};
} // namespace keys

// Fetches the file at `url` and imports it as CTY.DAT into the list at
// `dbPath`. A failed download is IText(275), a file that is no country list
// IText(84); either way the old list stays as it was.
Result<CountryTables> downloadCountryList(HttpGetter& http, const std::string& url,
                                          const std::filesystem::path& dbPath);

} // namespace orv
