// The remote-control command lines and their effect on the entry row: any
// bytes, cut into lines as the server cuts them. A line that is no command
// changes nothing and answers nothing; what a command writes keeps the
// field's rules (a call of at most 15 characters, a locator of 6, both
// upper case without blanks or control characters, a band of the ten); the
// item always goes out ending its line.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "core/remote/remote_link.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv::remote;

namespace {

class Row final : public EntryRowPort {
public:
    std::string text(Field f) const override {
        const auto it = fields.find(f);
        return it == fields.end() ? std::string() : it->second;
    }
    int band() const override { return band_; }
    void selectBand(int index) override { band_ = index; }
    void setCall(const std::string& call) override { fields[Field::Text3] = call; }
    void setLocator(const std::string& locator) override { fields[Field::Text7] = locator; }

    std::map<Field, std::string> fields{
        {Field::Text3, "DL1ABC"}, {Field::Text7, "JO62QM"}, {Field::Text12, "123\xC2\xB0"}};
    int band_ = 1;
};

class Beacon final : public BeaconPort {
public:
    std::string state() const override { return on ? "OnAir" : "Bake Ein"; }
    void press() override { on = !on; }
    bool on = false;
};

bool clean(const std::string& s) {
    return std::all_of(s.begin(), s.end(), [](char c) {
        const auto u = static_cast<unsigned char>(c);
        return u > 32 && !(c >= 'a' && c <= 'z');
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Row row;
    Beacon beacon;
    Link link(row, beacon);
    std::size_t start = 0;
    while (start <= bytes.size()) {
        std::size_t end = bytes.find('\n', start);
        if (end == std::string_view::npos)
            end = bytes.size();
        std::string_view line = bytes.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        start = end + 1;

        const auto before = row.fields;
        const int bandBefore = row.band_;
        const bool beaconBefore = beacon.on;
        const std::string itemBefore = link.item();
        const auto cmd = parseCommand(line);
        const Link::Outcome out = link.execute(line);
        if (!cmd) {
            FUZZ_CHECK(!out.answered && !out.changed, "a line that is no command answered");
            FUZZ_CHECK(row.fields == before && row.band_ == bandBefore &&
                           beacon.on == beaconBefore && link.item() == itemBefore,
                       "a line that is no command changed something");
            continue;
        }
        FUZZ_CHECK(row.band_ >= 0 && row.band_ <= 9, "a band outside the ten");
        const std::string call = row.text(Field::Text3);
        const std::string loc = row.text(Field::Text7);
        if (cmd->name == Name::SetCall && call != before.at(Field::Text3))
            FUZZ_CHECK(orv::text::length(call) <= 15 && clean(call),
                       "a call against the field's rules");
        if (cmd->name == Name::SetLoca && loc != before.at(Field::Text7))
            FUZZ_CHECK(orv::text::length(loc) <= 6 && clean(loc),
                       "a locator against the field's rules");
        if (!isReadCommand(cmd->name))
            FUZZ_CHECK(!out.answered, "a write command answered");
        const std::string sent = itemLine(link.item());
        FUZZ_CHECK(sent.size() >= 2 && sent.substr(sent.size() - 2) == "\r\n",
                   "an item line without its end");
        if (end == bytes.size())
            break;
    }
    return 0;
}
