// The command interface's rules: names, arguments and their cleaning, the
// reply item and when it counts as changed, the beacon commands and the keys
// that publish a text.
#include <gtest/gtest.h>

#include <map>

#include "core/remote/remote_link.h"
#include "core/remote/remote_settings.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::remote;

namespace {

// The entry row as plain values, recording what was set.
class Row final : public EntryRowPort {
public:
    std::string text(Field f) const override {
        const auto it = fields.find(f);
        return it == fields.end() ? std::string() : it->second;
    }
    int band() const override { return bandIndex; }
    void selectBand(int i) override {
        bandIndex = i;
        ++bandSelections;
    }
    void setCall(const std::string& c) override {
        fields[Field::Text3] = c;
        ++callsSet;
    }
    void setLocator(const std::string& l) override { fields[Field::Text7] = l; }

    std::map<Field, std::string> fields;
    int bandIndex = 1;
    int bandSelections = 0;
    int callsSet = 0;
};

class Beacon final : public BeaconPort {
public:
    std::string state() const override { return caption; }
    void press() override { ++presses; }
    std::string caption = "Bake Ein";
    int presses = 0;
};

Row filledRow() {
    Row r;
    r.fields = {{Field::Text2, "14:30"},   {Field::Text3, "OK1KKW"}, {Field::Text4, "59"},
                {Field::Text5, "007"},     {Field::Text6, "59012"},  {Field::Text7, "JO70FD"},
                {Field::Text8, "285"},     {Field::Text9, "rain"},   {Field::Text10, "No"},
                {Field::Text11, "DL0XYZ"}, {Field::Text12, "118°"},  {Field::Text13, "JO62QM"},
                {Field::Combo2, "CW"},     {Field::Combo3, "SSB"},   {Field::Combo6, "TR"},
                {Field::Combo8, "DL1OP"}};
    r.bandIndex = 3;
    return r;
}

} // namespace

TEST(RemoteLink, ReadCommandsAnswerTheirField) {
    struct Case {
        std::string line;
        std::string item;
    };
    const Case cases[] = {
        {"GET__QTF:", "118"},
        {"GET_CALL:", "OK1KKW"},
        {"get_call:", "OK1KKW"},
        {"  GET_CALL:", "OK1KKW"},
        {"GET_CALL:xyz", "OK1KKW"},
        {"Get_Loca:", "JO70FD"},
        {"GET__ALL:", "14:30|OK1KKW|59|007|59012|JO70FD|285|118|rain|TR|No\r\n"},
        {"GETMYCAL:", "DL0XYZ"},
        {"GETMYLOC:", "JO62QM"},
        {"GETOPCAL:", "DL1OP"},
        {"GET__QRG:", "3"},
        {"GETTXMOD:", "SSB"},
        {"GETRXMOD:", "CW"},
        {"GET__QRB:", "285"},
        {"GETQSONR:", "007"},
        {"GETBKSTA:", "BKSTA1"},
    };
    for (const Case& c : cases) {
        Row row = filledRow();
        Beacon beacon;
        Link link(row, beacon);
        link.publish("old");
        const auto out = link.execute(c.line);
        EXPECT_TRUE(out.answered) << c.line;
        EXPECT_TRUE(out.changed) << c.line;
        EXPECT_EQ(link.item(), c.item) << c.line;
    }
}

TEST(RemoteLink, EmptyBearingAndBeaconStates) {
    Row row;
    Beacon beacon;
    Link link(row, beacon);
    link.publish("x");
    EXPECT_TRUE(link.execute("GET__QTF:").answered);
    EXPECT_EQ(link.item(), "");
    row.fields[Field::Text12] = "7°";
    link.execute("GET__QTF:");
    EXPECT_EQ(link.item(), "7");
    for (const char* caption : {"OnAir", "On-Air"}) {
        beacon.caption = caption;
        link.execute("GETBKSTA:");
        EXPECT_EQ(link.item(), "BKSTA2") << caption;
    }
    beacon.caption = "onair"; // any other caption is off
    link.execute("GETBKSTA:");
    EXPECT_EQ(link.item(), "BKSTA1");
}

TEST(RemoteLink, AnItemThatStaysTheSameIsAnsweredButNotChanged) {
    Row row = filledRow();
    Beacon beacon;
    Link link(row, beacon);
    EXPECT_TRUE(link.execute("GET_CALL:").changed);
    const auto again = link.execute("GET_CALL:");
    EXPECT_TRUE(again.answered);
    EXPECT_FALSE(again.changed);
    // Write commands keep the item as it was.
    const auto set = link.execute("SET_CALL:DL1AAA");
    EXPECT_FALSE(set.answered);
    EXPECT_FALSE(set.changed);
    EXPECT_EQ(link.item(), "OK1KKW");
}

TEST(RemoteLink, WriteCommandsAndTheirArguments) {
    struct Case {
        std::string line;
        std::string call;    // Text3 afterwards
        std::string locator; // Text7 afterwards
        int band;            // Combo1 afterwards
    };
    const Case cases[] = {
        {"SET_CALL: oe 1xyz", "OE1XYZ", "JO70FD", 3},
        {"SET_CALL:dl\t1\x01"
         "abc ",
         "DL1ABC", "JO70FD", 3},
        {"SET_CALL:ABCDEFGHIJKLMNOPQRS", "ABCDEFGHIJKLMNO", "JO70FD", 3},
        {"SET_CALL:   ", "OK1KKW", "JO70FD", 3},
        {"SET_CALL:", "OK1KKW", "JO70FD", 3},
        // A leading blank shifts the argument: the colon is taken with it.
        {" SET_CALL:DL1ABC", ":DL1ABC", "JO70FD", 3},
        {"set_loca: jn 79 abxx", "OK1KKW", "JN79AB", 3},
        {"SET_LOCA:", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:0", "OK1KKW", "JO70FD", 0},
        {"SET__QRG: 9 ", "OK1KKW", "JO70FD", 9},
        {"SET__QRG:1.4", "OK1KKW", "JO70FD", 1},
        {"SET__QRG:1.6", "OK1KKW", "JO70FD", 2},
        {"SET__QRG:2.5", "OK1KKW", "JO70FD", 2},
        {"SET__QRG:+5", "OK1KKW", "JO70FD", 5},
        {"SET__QRG: 10", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:9.7", "OK1KKW", "JO70FD", 3},
        {"SET__QRG: -1", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:abc", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:5x", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:nan", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:inf", "OK1KKW", "JO70FD", 3},
        {"SET__QRG:1e0", "OK1KKW", "JO70FD", 1},
        {"SET__QR:5", "OK1KKW", "JO70FD", 3},
        {"XSET__QRG:5", "OK1KKW", "JO70FD", 3},
        {"", "OK1KKW", "JO70FD", 3},
        {"\xff\xfe\x00garbage", "OK1KKW", "JO70FD", 3},
    };
    for (const Case& c : cases) {
        Row row = filledRow();
        Beacon beacon;
        Link link(row, beacon);
        link.execute(c.line);
        EXPECT_EQ(row.text(Field::Text3), c.call) << c.line;
        EXPECT_EQ(row.text(Field::Text7), c.locator) << c.line;
        EXPECT_EQ(row.band(), c.band) << c.line;
        EXPECT_EQ(link.item(), "") << c.line;
        EXPECT_EQ(beacon.presses, 0) << c.line;
    }
}

TEST(RemoteLink, BeaconCommandsPressOnlyToChangeTheState) {
    struct Case {
        std::string caption;
        std::string line;
        int presses;
    };
    const Case cases[] = {
        {"Bake Ein", "SET_BKON:", 1}, {"OnAir", "SET_BKON:", 0},    {"On-Air", "SET_BKON:", 0},
        {"Bake Ein", "SETBKOFF:", 0}, {"OnAir", "SETBKOFF:", 1},    {"On-Air", "setbkoff:", 1},
        {"OnAir", "SETBKOFF:now", 1}, {"Bake Ein", "SET_BKOF:", 0},
    };
    for (const Case& c : cases) {
        Row row;
        Beacon beacon;
        beacon.caption = c.caption;
        Link link(row, beacon);
        link.execute(c.line);
        EXPECT_EQ(beacon.presses, c.presses) << c.caption << " " << c.line;
    }
    // The beacon can be wired after the link is made.
    Row row;
    Beacon idle, running;
    running.caption = "OnAir";
    Link link(row, idle);
    link.setBeacon(running);
    link.execute("GETBKSTA:");
    EXPECT_EQ(link.item(), "BKSTA2");
}

TEST(RemoteLink, ArgumentsCountCharactersNotBytes) {
    // "Ä" is two bytes: the name is still the first nine characters.
    const auto c = parseCommand("SET_CALL:\xc3\x84x");
    ASSERT_TRUE(c);
    EXPECT_EQ(c->argument, "\xc3\x84x");
    EXPECT_FALSE(parseCommand("\xc3\x84"
                              "ET_CALL:x"));
    EXPECT_EQ(cleanArgument("\xc3\xa4"
                            "bcdef"
                            "gh",
                            6),
              "\xc3\x84"
              "BCDEF");
}

TEST(RemoteLink, ItemLines) {
    EXPECT_EQ(itemLine(""), "\r\n");
    EXPECT_EQ(itemLine("118"), "118\r\n");
    EXPECT_EQ(itemLine("a|b\r\n"), "a|b\r\n");
    EXPECT_EQ(itemLine("a\nb\rc"), "a b c\r\n");
}

TEST(RemoteLink, PublishKeysMatchEitherCase) {
    const PublishKey keys[3] = {{0, "never"}, {65, "first A"}, {65, "second A"}};
    EXPECT_EQ(publishedText(keys, U'a'), "first A");
    EXPECT_EQ(publishedText(keys, U'A'), "first A");
    EXPECT_FALSE(publishedText(keys, U'b'));
    EXPECT_FALSE(publishedText(keys, 0)); // a code of 0 is no key
    const PublishKey star[3] = {{42, "TURN"}, {0, ""}, {0, ""}};
    EXPECT_EQ(publishedText(star, U'*'), "TURN");
    EXPECT_FALSE(publishedText(star, U'+'));
}

TEST(RemoteSettings, DefaultsAndTheAllowList) {
    test::TempDir dir;
    Settings settings{IniFile{dir.path() / "OrvantaContest.INI"}};
    auto s = readServerSettings(settings);
    EXPECT_EQ(s.port, 7300);
    EXPECT_EQ(s.address, "127.0.0.1");
    EXPECT_TRUE(s.clients.empty());
    settings.set(Port, 70000); // out of range: the default
    EXPECT_EQ(readServerSettings(settings).port, 7300);
    settings.set(Port, 7301);
    settings.set(Address, "0.0.0.0");
    settings.set(Clients, "192.168.1.20, 10.0.0.0/8;127.0.0.1");
    s = readServerSettings(settings);
    EXPECT_EQ(s.port, 7301);
    EXPECT_EQ(s.address, "0.0.0.0");
    EXPECT_EQ(s.clients, (std::vector<std::string>{"192.168.1.20", "10.0.0.0/8", "127.0.0.1"}));

    settings.set(keys::Flag(2), 42);
    settings.set(keys::FlagBefehl(2), "TURN 90");
    settings.set(keys::Flag(3), -5);
    const auto p = readPublishKeys(settings);
    EXPECT_EQ(p.keys[0].code, 0);
    EXPECT_EQ(p.keys[1].code, 42);
    EXPECT_EQ(p.keys[1].text, "TURN 90");
    EXPECT_EQ(p.keys[2].code, 0);
}
