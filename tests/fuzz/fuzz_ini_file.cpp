// The settings file reader: any bytes as the file, every section and key it
// names read back, and one write whose value must then read back unchanged.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/settings/ini_file.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto path = fuzz::workDir() / "OrvantaContest.ini";
    fuzz::writeBytes(path, bytes);
    IniFile ini(path);

    // The names the file itself uses, as the program would ask for them.
    std::string section = "QB-OPTION";
    for (const std::string& line : text::splitLines(text::decodeLegacy(bytes))) {
        const std::string t = text::trim(line);
        if (t.size() > 1 && t[0] == '[') {
            section = text::trim(t.substr(1, t.find(']') == std::string::npos ? std::string::npos
                                                                              : t.find(']') - 1));
            const auto entries = ini.readSection(section);
            std::size_t total = 0;
            for (const auto& e : entries)
                total += e.size();
            FUZZ_CHECK(total <= IniFile::kMaxText, "a section read past the profile buffer");
        } else if (const auto eq = t.find('='); eq != std::string::npos && !section.empty()) {
            const std::string key = t.substr(0, eq);
            FUZZ_CHECK(ini.getStr(section, key).size() <= IniFile::kMaxText,
                       "a value longer than the profile buffer");
            (void)ini.getInt(section, key);
        }
    }

    // A write keeps its value, whatever the file held before.
    ini.write("FUZZ", "Key", "Value 1");
    FUZZ_CHECK(ini.getStr("FUZZ", "Key") == "Value 1", "a written value did not read back");
    FUZZ_CHECK(ini.getInt("FUZZ", "Key") == 0, "a text read as a number");
    ini.deleteKey("FUZZ", "Key");
    FUZZ_CHECK(ini.getStr("FUZZ", "Key").empty(), "a deleted key still reads");
    return 0;
}
