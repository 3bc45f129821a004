#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/ini_file.h"

namespace orv {

// Section names of the main settings file, spelled as the file has them.
namespace section {
inline constexpr std::string_view QB = "QB";
inline constexpr std::string_view QBOption = "QB-OPTION";
inline constexpr std::string_view AConDat = "AConDat";
inline constexpr std::string_view DDE = "DDE";
inline constexpr std::string_view CWQBF = "CWQBF";
inline constexpr std::string_view EDiExport = "EDiExport";
inline constexpr std::string_view PrintData = "PrintData";
inline constexpr std::string_view QJDaten = "QJDaten";
// Sections that are lists, one entry a line.
inline constexpr std::string_view OPCallList = "OPCallList";
inline constexpr std::string_view MODE = "MODE";
inline constexpr std::string_view AUSBR = "AUSBR";
inline constexpr std::string_view ConE = "ConE";
inline constexpr std::string_view CallList = "CallList";
inline constexpr std::string_view QJDatenQRG = "QJDatenQRG";
inline constexpr std::string_view QJDatenPWR = "QJDatenPWR";
inline constexpr std::string_view QJDatenANT = "QJDatenANT";
inline constexpr std::string_view QJDatMyLocList = "QJDatMyLocList";
} // namespace section

// A whole number. `fallback` stands for a stored 0 (or an absent key) and for
// any value outside [min, max]; with the fallback 0 and no bounds the stored
// value is taken as it is.
struct IntSetting {
    std::string section;
    std::string key;
    long long fallback = 0;
    long long min = std::numeric_limits<long long>::min();
    long long max = std::numeric_limits<long long>::max();
};

// A flag stored as a number: non-zero is true; written as -1 or 0.
struct BoolSetting {
    std::string section;
    std::string key;
};

// Text, trimmed; an empty value means the fallback. Some keys are kept
// upper-cased, as calls and locators are.
struct StrSetting {
    std::string section;
    std::string key;
    std::string fallback = {};
    bool upperCase = false;
};

// A colour as the old world stored it: 0x00BBGGRR.
struct Colour {
    std::uint8_t r = 0, g = 0, b = 0;

    static Colour fromBgr(std::uint32_t bgr) {
        return {static_cast<std::uint8_t>(bgr & 0xFF), static_cast<std::uint8_t>((bgr >> 8) & 0xFF),
                static_cast<std::uint8_t>((bgr >> 16) & 0xFF)};
    }
    std::uint32_t bgr() const {
        return static_cast<std::uint32_t>(r) | static_cast<std::uint32_t>(g) << 8 |
               static_cast<std::uint32_t>(b) << 16;
    }
    bool operator==(const Colour&) const = default;
};

// "&HBBGGRR" (with or without a closing "&") or a decimal number; nothing
// for text that is neither, or a value beyond 24 bits.
std::optional<Colour> parseColour(std::string_view s);
// The "&HBBGGRR" form, six hex digits.
std::string formatColour(Colour c);

// Colours are read as text so that 0 (black) stays a valid value: only an
// empty value means the fallback, and so does one that is no colour at all.
struct ColourSetting {
    std::string section;
    std::string key;
    std::uint32_t fallbackBgr = 0;
};

// The keys of the main settings file with their defaults and range rules, so
// that no caller repeats a default.
namespace keys {
// QB: program state.
inline const IntSetting Einverstanden{"QB", "Einverstanden"};
inline const StrSetting OPCall{"QB", "OPCall", "", true};
inline const IntSetting Mode{"QB", "Mode"}; // start mode's index in the log chooser
inline const StrSetting Prop{"QB", "Prop", "", true};
inline const IntSetting MaxBake{"QB", "MaxBake", 100};
inline const StrSetting MyCall{"QB", "MyCall", "", true};
inline const StrSetting MyLocator{"QB", "MyLocator", "", true};
inline const IntSetting StartQRG{"QB", "StartQRG"};
inline const IntSetting ZeitPlusMinus{"QB", "ZeitPlusMinus"};

// QB-OPTION: options.
inline const StrSetting Language{"QB-OPTION", "Language"};
inline const ColourSetting FarbeBereitsQSO{"QB-OPTION", "FarbeBereitsQSO", 0xE0E0E0};
inline const ColourSetting FarbeAktiv{"QB-OPTION", "FarbeAktiv", 0x80C0FF};
inline const ColourSetting FarbeInAktiv{"QB-OPTION", "FarbeInAktiv", 0xE0E0E0};
inline const ColourSetting FarbeNoEdit{"QB-OPTION", "FarbeNoEdit", 0xE0E0E0};
inline const IntSetting COM{"QB-OPTION", "COM"};
inline const IntSetting PIN{"QB-OPTION", "PIN"};
inline const IntSetting COMCW{"QB-OPTION", "COMCW"};
inline const IntSetting PinCW{"QB-OPTION", "PinCW"};
inline const IntSetting PinCWPtt{"QB-OPTION", "PinCWPtt"};
inline const IntSetting CWInterface{"QB-OPTION", "CWInterface"};
inline const IntSetting CWWPM{"QB-OPTION", "CWWPM"};
inline const StrSetting CWEND{"QB-OPTION", "CWEND"};
inline const BoolSetting CWLoopEinAus{"QB-OPTION", "CWLoopEinAus"};
inline const IntSetting CWLoopPause{"QB-OPTION", "CWLoopPause", 1, 1, 60};
inline const IntSetting LoopPause{"QB-OPTION", "LoopPause", 1, 1, 60};
inline const IntSetting BakeArt{"QB-OPTION", "BakeArt"};
inline const BoolSetting SSBCWFlip{"QB-OPTION", "SSBCWFlip"};
inline const StrSetting Mode2St{"QB-OPTION", "Mode2St", "SSB"};
inline const StrSetting Mode3St{"QB-OPTION", "Mode3St", "CW"};
inline const BoolSetting ZeitEdit{"QB-OPTION", "ZeitEdit"};
inline const IntSetting Zeitbereich{"QB-OPTION", "Zeitbereich", 60, 1, 60000};
inline const IntSetting ZeigerMAX{"QB-OPTION", "ZeigerMAX", 10, 1, 60000};
inline const BoolSetting AntenneKomma{"QB-OPTION", "AntenneKomma"};
inline const IntSetting FTaste{"QB-OPTION", "FTaste"};
inline const StrSetting SichernPfad{"QB-OPTION", "SichernPfad"};
inline const IntSetting SichernIntervall{"QB-OPTION", "SichernIntervall", 30};
inline const BoolSetting SichernungsArt{"QB-OPTION", "SichernungsArt"};
inline const IntSetting SichernungAN{"QB-OPTION", "SichernungAN"}; // 1: backup on
// ADIF frequency of band position i (0 to 9), in MHz.
StrSetting ADIFQRG(int i);

// AConDat: the current contest; a weight below 1 reads as 1.
IntSetting C(int band);
inline const StrSetting CName{"AConDat", "CName"};

// DDE flag lines 1 to 3.
IntSetting Flag(int i);
StrSetting FlagBefehl(int i);

// CWQBF: the CW window.
IntSetting FOn(int n);
StrSetting FText(int n);
inline const StrSetting CWText{"CWQBF", "CWText"};
inline const IntSetting Links{"CWQBF", "Links"};
inline const IntSetting Oben{"CWQBF", "Oben"};

// EDiExport: the boxes' last contents, and a band's template in the section
// "EDiExport" + band text (for example "EDiExport145 MHz").
StrSetting Ex(int n);
StrSetting Vo(std::string_view bandText, int n);
// PrintData: the printing form's fields.
StrSetting PriD(int n);

// QJDaten: the station log window.
inline const IntSetting QJLeft{"QJDaten", "Left"};
inline const IntSetting QJTop{"QJDaten", "Top"};
inline const IntSetting QJHeight{"QJDaten", "Height"};
inline const IntSetting QJWidth{"QJDaten", "Width"};
inline const IntSetting QJEingabePos{"QJDaten", "EingabePos"};
inline const StrSetting QJPower{"QJDaten", "Power"};
inline const StrSetting QJQSL{"QJDaten", "QSL"};
inline const StrSetting QJLogFile{"QJDaten", "LogFile"};
} // namespace keys

// One row of the operator list: the call, the voice file, the beacon text and
// the tone file, stored as "call¶voice¶text¶tone".
struct OpCall {
    std::string call = {}, voiceFile = {}, beaconText = {}, toneFile = {};
    bool operator==(const OpCall&) const = default;
};

// The main settings file with typed keys. Every getter reads the file and
// every setter writes it at once: nothing is cached, as another window may
// have written a key in between.
class Settings {
public:
    explicit Settings(IniFile ini) : ini_(std::move(ini)) {}

    IniFile& file() { return ini_; }
    const IniFile& file() const { return ini_; }

    long long get(const IntSetting& s) const;
    void set(const IntSetting& s, long long value);
    bool get(const BoolSetting& s) const;
    void set(const BoolSetting& s, bool value);
    std::string get(const StrSetting& s) const;
    void set(const StrSetting& s, std::string_view value);
    Colour get(const ColourSetting& s) const;
    void set(const ColourSetting& s, Colour value);

    // Operators from OPCallList; an entry of a plain call has the other parts empty.
    std::vector<OpCall> opCalls() const;
    // Rewrites OPCallList with every operator whose call is not empty.
    void setOpCalls(const std::vector<OpCall>& ops);

    // The MODE list; an empty one is rebuilt with SSB, CW and FM first.
    std::vector<std::string> modes();
    void setModes(const std::vector<std::string>& modes);

    // CallList: the own calls last used, the latest first.
    std::vector<std::string> callList() const;
    // Puts a call on top of CallList (upper-cased, without its former entry),
    // keeping at most kCallListSize entries.
    void rememberCall(std::string_view call);
    static constexpr std::size_t kCallListSize = 10;

    // Any other list section (AUSBR, ConE, the station log lists).
    std::vector<std::string> list(std::string_view section) const;
    void setList(std::string_view section, const std::vector<std::string>& entries);

private:
    IniFile ini_;
};

} // namespace orv
