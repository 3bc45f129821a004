#include "core/remote/remote_link.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <utility>

#include "core/util/text.h"

namespace orv::remote {
namespace {

constexpr std::array<std::pair<std::string_view, Name>, 18> kNames{{
    {"GET__QTF:", Name::GetQtf},
    {"GET_CALL:", Name::GetCall},
    {"GET_LOCA:", Name::GetLoca},
    {"GET__ALL:", Name::GetAll},
    {"GETMYCAL:", Name::GetMyCal},
    {"GETMYLOC:", Name::GetMyLoc},
    {"GETOPCAL:", Name::GetOpCal},
    {"GET__QRG:", Name::GetQrg},
    {"GETTXMOD:", Name::GetTxMod},
    {"GETRXMOD:", Name::GetRxMod},
    {"GET__QRB:", Name::GetQrb},
    {"GETQSONR:", Name::GetQsoNr},
    {"GETBKSTA:", Name::GetBkSta},
    {"SET_CALL:", Name::SetCall},
    {"SET__QRG:", Name::SetQrg},
    {"SET_LOCA:", Name::SetLoca},
    {"SETBKOFF:", Name::SetBkOff},
    {"SET_BKON:", Name::SetBkOn},
}};

constexpr std::size_t kNameChars = 9;

// The text after the first n code points.
std::string_view afterChars(std::string_view s, std::size_t n) {
    const std::size_t skip = text::left(s, n).size();
    return s.substr(skip);
}

// `Text12` without its last character, the degree sign.
std::string bearing(const EntryRowPort& entry) {
    const std::string qtf = entry.text(Field::Text12);
    const std::size_t n = text::length(qtf);
    return n == 0 ? std::string() : text::left(qtf, n - 1);
}

} // namespace

bool beaconRunning(std::string_view caption) {
    return caption == "OnAir" || caption == "On-Air";
}

std::optional<Command> parseCommand(std::string_view line) {
    const std::string name = text::upper(text::left(text::trim(line), kNameChars));
    for (const auto& [t, n] : kNames)
        if (t == name)
            return Command{n, std::string(afterChars(line, kNameChars))};
    return std::nullopt;
}

bool isReadCommand(Name name) {
    return name != Name::SetCall && name != Name::SetQrg && name != Name::SetLoca &&
           name != Name::SetBkOff && name != Name::SetBkOn;
}

std::string cleanArgument(std::string_view argument, std::size_t maxChars) {
    const std::string upper = text::upper(text::trim(argument));
    std::string kept;
    kept.reserve(upper.size());
    for (char c : upper)
        if (static_cast<unsigned char>(c) >= 33)
            kept += c;
    return text::left(kept, maxChars);
}

std::optional<int> bandArgument(std::string_view argument) {
    std::string t = text::trim(argument);
    std::string_view v = t;
    if (!v.empty() && v.front() == '+')
        v.remove_prefix(1);
    if (v.empty() || !(std::isdigit(static_cast<unsigned char>(v.front())) || v.front() == '.' ||
                       v.front() == '-'))
        return std::nullopt; // no "inf" or "nan"
    double d = 0;
    const auto [end, ec] = std::from_chars(v.data(), v.data() + v.size(), d);
    if (ec != std::errc() || end != v.data() + v.size() || !std::isfinite(d))
        return std::nullopt;
    if (d < 0 || d >= 10)
        return std::nullopt;
    // Rounding may still reach 10 (9.5 and above): no such band.
    const double r = std::nearbyint(d);
    if (r > 9)
        return std::nullopt;
    return static_cast<int>(r);
}

Link::Outcome Link::execute(std::string_view line) {
    const auto command = parseCommand(line);
    if (!command)
        return {};
    if (!isReadCommand(command->name)) {
        write(*command);
        return {};
    }
    std::string reply = read(command->name);
    const bool changed = reply != item_;
    item_ = std::move(reply);
    return {true, changed};
}

std::string Link::read(Name name) const {
    switch (name) {
    case Name::GetQtf:
        return bearing(entry_);
    case Name::GetCall:
        return entry_.text(Field::Text3);
    case Name::GetLoca:
        return entry_.text(Field::Text7);
    case Name::GetAll: {
        std::string all;
        const Field before[] = {Field::Text2, Field::Text3, Field::Text4, Field::Text5,
                                Field::Text6, Field::Text7, Field::Text8};
        for (Field f : before)
            all += entry_.text(f) + "|";
        all += bearing(entry_) + "|";
        all += entry_.text(Field::Text9) + "|" + entry_.text(Field::Combo6) + "|" +
               entry_.text(Field::Text10) + "\r\n";
        return all;
    }
    case Name::GetMyCal:
        return entry_.text(Field::Text11);
    case Name::GetMyLoc:
        return entry_.text(Field::Text13);
    case Name::GetOpCal:
        return entry_.text(Field::Combo8);
    case Name::GetQrg:
        return std::to_string(entry_.band());
    case Name::GetTxMod:
        return entry_.text(Field::Combo3);
    case Name::GetRxMod:
        return entry_.text(Field::Combo2);
    case Name::GetQrb:
        return entry_.text(Field::Text8);
    case Name::GetQsoNr:
        return entry_.text(Field::Text5);
    case Name::GetBkSta:
        return beaconRunning(beacon_->state()) ? "BKSTA2" : "BKSTA1";
    default:
        return item_;
    }
}

void Link::write(const Command& command) {
    switch (command.name) {
    case Name::SetCall:
        if (auto call = cleanArgument(command.argument, 15); !call.empty())
            entry_.setCall(call);
        break;
    case Name::SetQrg:
        if (const auto band = bandArgument(command.argument))
            entry_.selectBand(*band);
        break;
    case Name::SetLoca:
        if (auto loc = cleanArgument(command.argument, 6); !loc.empty())
            entry_.setLocator(loc);
        break;
    case Name::SetBkOff:
        if (beaconRunning(beacon_->state()))
            beacon_->press();
        break;
    case Name::SetBkOn:
        if (!beaconRunning(beacon_->state()))
            beacon_->press();
        break;
    default:
        break;
    }
}

std::string itemLine(std::string_view item) {
    std::string_view body = item;
    if (text::endsWith(body, "\r\n"))
        body.remove_suffix(2);
    std::string line(body);
    for (char& c : line)
        if (c == '\r' || c == '\n')
            c = ' ';
    return line + "\r\n";
}

std::optional<std::string> publishedText(const PublishKey (&keys)[3], char32_t typed) {
    auto upper = [](char32_t c) { return c >= U'a' && c <= U'z' ? c - 32 : c; };
    auto lower = [](char32_t c) { return c >= U'A' && c <= U'Z' ? c + 32 : c; };
    for (const PublishKey& k : keys) {
        const auto code = static_cast<char32_t>(k.code);
        if (k.code > 0 && (upper(typed) == code || lower(typed) == code))
            return k.text;
    }
    return std::nullopt;
}

} // namespace orv::remote
