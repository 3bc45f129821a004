#pragma once

#include <optional>
#include <string>
#include <string_view>

// The command interface of the main window for the station's other programs
// (rotor and rig control, scripts): a command line is parsed, applied to the
// entry row and the beacon through the ports below, and its reply kept in the
// one item `DDETx1`. Transport and framing belong to the server.
namespace orv::remote {

// The fields of the main window that the commands read, by their control
// names.
enum class Field {
    Text2,  // time
    Text3,  // call
    Text4,  // report sent
    Text5,  // number sent
    Text6,  // report and number received
    Text7,  // locator
    Text8,  // distance
    Text9,  // remark
    Text10, // QSL
    Text11, // own call
    Text12, // bearing, with its degree sign
    Text13, // own locator
    Combo2, // receive mode
    Combo3, // transmit mode
    Combo6, // propagation
    Combo8, // operator
};

// The entry row as the commands see it.
class EntryRowPort {
public:
    virtual ~EntryRowPort() = default;
    virtual std::string text(Field field) const = 0;
    // Index of the band selected in `Combo1`.
    virtual int band() const = 0;
    virtual void selectBand(int index) = 0;
    // Puts a call into `Text3` and runs the field's look-ups as if it had
    // been typed; the cursor stands at its end.
    virtual void setCall(const std::string& call) = 0;
    // Puts a locator into `Text7`, cursor at its end; distance and bearing
    // follow as for a typed one.
    virtual void setLocator(const std::string& locator) = 0;
};

// The beacon button `BakeEinAus`: its caption is the beacon's state.
class BeaconPort {
public:
    virtual ~BeaconPort() = default;
    // "Bake Ein" when off, "OnAir" or "On-Air" while it runs.
    virtual std::string state() const = 0;
    // A click without the mouse: start or stop with the options as set.
    virtual void press() = 0;
};

bool beaconRunning(std::string_view caption);

enum class Name {
    GetQtf,
    GetCall,
    GetLoca,
    GetAll,
    GetMyCal,
    GetMyLoc,
    GetOpCal,
    GetQrg,
    GetTxMod,
    GetRxMod,
    GetQrb,
    GetQsoNr,
    GetBkSta,
    SetCall,
    SetQrg,
    SetLoca,
    SetBkOff,
    SetBkOn,
};

struct Command {
    Name name;
    std::string argument; // from character 10 of the line as it came
};

// The name is the first 9 characters of the trimmed line, upper-cased; the
// argument is counted from the untrimmed line, so a leading blank shifts it.
// Nothing for a name that is not a command.
std::optional<Command> parseCommand(std::string_view line);
bool isReadCommand(Name name);

// `SET_CALL:` and `SET_LOCA:`: trimmed, upper-cased, every character below
// code 33 removed, cut to `maxChars`.
std::string cleanArgument(std::string_view argument, std::size_t maxChars);
// `SET__QRG:`: a number from 0 to 9 after rounding to the nearest whole
// number (ties to even); nothing for any other text.
std::optional<int> bandArgument(std::string_view argument);

// The link handler with its reply item.
class Link {
public:
    Link(EntryRowPort& entry, BeaconPort& beacon) : entry_(entry), beacon_(&beacon) {}

    // Where the beacon lives; the one place the program wires it.
    void setBeacon(BeaconPort& beacon) { beacon_ = &beacon; }

    struct Outcome {
        bool answered = false; // a read command: its sender gets the item
        bool changed = false;  // the item has a new value
    };
    // Runs one command line (without its line end). Unknown names and bad
    // arguments change nothing and answer nothing.
    Outcome execute(std::string_view line);
    // A key of the window publishes a text on the item.
    void publish(std::string text) { item_ = std::move(text); }

    const std::string& item() const { return item_; }

private:
    std::string read(Name name) const;
    void write(const Command& command);

    EntryRowPort& entry_;
    BeaconPort* beacon_;
    std::string item_; // `DDETx1`
};

// One item as one line for a client: the item and CR LF. An item that ends
// in CR LF already (`GET__ALL:`) is one line as it stands; any other line
// break inside it becomes a blank, so that a line is always one item.
std::string itemLine(std::string_view item);

// The keys that publish a text (`Flag`i with `FlagBefehl`i).
struct PublishKey {
    int code = 0; // character code, 0 for none
    std::string text;
};
// The text a typed character publishes: the first key whose code equals the
// character in upper or lower case; a code of 0 matches nothing typed.
std::optional<std::string> publishedText(const PublishKey (&keys)[3], char32_t typed);

} // namespace orv::remote
