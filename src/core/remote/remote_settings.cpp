#include "core/remote/remote_settings.h"

#include "core/util/text.h"

namespace orv::remote {

ServerSettings readServerSettings(const Settings& settings) {
    ServerSettings s;
    s.port = static_cast<int>(settings.get(Port));
    if (auto a = settings.get(Address); !a.empty())
        s.address = a;
    // Blanks, commas or semicolons between the entries.
    std::string entry;
    for (char c : settings.get(Clients) + " ") {
        if (c == ' ' || c == ',' || c == ';' || c == '\t') {
            if (!entry.empty())
                s.clients.push_back(entry);
            entry.clear();
        } else {
            entry += c;
        }
    }
    return s;
}

PublishKeys readPublishKeys(const Settings& settings) {
    PublishKeys p;
    for (int i = 1; i <= 3; ++i) {
        PublishKey& k = p.keys[i - 1];
        const long long code = settings.get(keys::Flag(i));
        k.code = code > 0 && code < 256 ? static_cast<int>(code) : 0;
        k.text = settings.get(keys::FlagBefehl(i));
    }
    return p;
}

} // namespace orv::remote
