#include "core/locator/locator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <system_error>

#include "core/util/text.h"

namespace orv {

namespace {

// The stored constants of the score. They differ from the exact values in the
// last digits, and those digits decide some roundings up to the next km.
constexpr double kGradZuRad = 0.0174532925199;
constexpr double kRadZuGrad = 57.2957795130786;
constexpr double kKmProGrad = 111.136;
constexpr double kPi = 3.14159265359;

bool inRange(char c, char lo, char hi) {
    return c >= lo && c <= hi;
}

} // namespace

bool LocOK(std::string_view loc) {
    return loc.size() == 6 && inRange(loc[0], 'A', 'R') && inRange(loc[1], 'A', 'R') &&
           inRange(loc[2], '0', '9') && inRange(loc[3], '0', '9') && inRange(loc[4], 'A', 'X') &&
           inRange(loc[5], 'A', 'X');
}

LocPosition LocKoordinaten(std::string_view loc) {
    const int c1 = loc[0] - 'A', c2 = loc[1] - 'A', c3 = loc[2] - '0', c4 = loc[3] - '0';
    const int c5 = loc[4] - 'A', c6 = loc[5] - 'A';
    // Whole degrees first, exactly in integers, then the sub-square centre:
    // the order of the additions fixes the last bit of the double.
    LocPosition p;
    p.lat = (c2 * 10 - 90 + c4) + (c6 * 2.5 + 1.25) / 60;
    p.lon = -((180 - c1 * 20 - c3 * 2) - (c5 * 5 + 2.5) / 60);
    return p;
}

double LocQRB(double lat1, double lon1, double lat2, double lon2) {
    // Two stations in one sub-square are 1 km apart, never 0.
    if (lat1 == lat2 && lon1 == lon2)
        return 1;
    const double a = (90 - lat1) * kGradZuRad;
    const double b = (90 - lat2) * kGradZuRad;
    const double d = (lon1 - lon2) * kGradZuRad;
    const double c =
        std::clamp(std::cos(a) * std::cos(b) + std::sin(b) * std::sin(a) * std::cos(d), -1.0, 1.0);
    // The arc cosine spelled with an arc tangent; its division by zero at
    // c = -1 (and 1) is part of the formula, not something to smooth away.
    const double nenner = std::sqrt(-c * c + 1);
    if (nenner == 0)
        throw LocRechenfehler();
    const double winkel = std::atan(-c / nenner) + 2 * std::atan(1.0);
    const double km = kRadZuGrad * (kKmProGrad * winkel);
    const double ganz = std::floor(km);
    return km == ganz ? km : ganz + 1;
}

float LocQTF(double lat1, double lon1, double lat2, double lon2) {
    if (lat1 == lat2 && lon1 == lon2)
        return 0;
    const double b = (90 - lat2) * kGradZuRad;
    const double a = (90 - lat1) * kGradZuRad;
    const double d = (lon2 - lon1) * kGradZuRad; // opposite sign to LocQRB; here it matters
    const double tanB = std::tan(b);
    if (tanB == 0)
        throw LocRechenfehler();
    const double y = std::sin(a) / tanB - std::cos(a) * std::cos(d);
    const double x = std::sin(d);
    double r = 0;
    if (y != 0) {
        const double t = std::atan(x / y);
        if (y < 0)
            r = t + kPi;
        else
            r = x < 0 ? t + 2 * kPi : t;
    } else if (x < 0) {
        r = 1.5 * kPi;
    } else if (x > 0) {
        r = 0.5 * kPi;
    }
    return static_cast<float>(r * kRadZuGrad);
}

std::int16_t GradGerundet(float grad) {
    // Half to even, done by hand so that no global rounding mode is involved.
    const double v = grad;
    const double unten = std::floor(v);
    const double rest = v - unten;
    double r = unten;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(unten, 2) != 0))
        r = unten + 1;
    return static_cast<std::int16_t>(r);
}

float GradMitKommastelle(float grad) {
    // A single-precision bearing is seen through its 7 significant digits
    // (89.35f reads "89.35" and gives 89.4, although its binary value lies
    // just below), then rounded half away from zero to one decimal.
    if (!(std::fabs(grad) < 1e9f))
        return grad; // no decimals left to round (and no room in the integers below)
    char buf[40];
    auto res = std::to_chars(buf, buf + sizeof buf, static_cast<double>(grad),
                             std::chars_format::scientific, 6);
    const std::string_view s(buf, static_cast<std::size_t>(res.ptr - buf)); // "-d.dddddde+XX"
    const bool negativ = s.front() == '-';
    const std::string_view m = s.substr(negativ ? 1 : 0);
    long long mantisse = 0; // the 7 digits as an integer: value = mantisse * 10^(exp - 6)
    for (char c : m.substr(0, m.find('e')))
        if (c != '.')
            mantisse = mantisse * 10 + (c - '0');
    const int exp = std::atoi(std::string(m.substr(m.find('e') + 1)).c_str());
    long long zehntel = 0; // value * 10, rounded
    const int shift = exp - 5;
    if (shift >= 0) {
        zehntel = mantisse;
        for (int i = 0; i < shift && i < 18; ++i)
            zehntel *= 10;
    } else if (shift > -18) {
        long long teiler = 1;
        for (int i = 0; i < -shift; ++i)
            teiler *= 10;
        zehntel = mantisse / teiler + ((mantisse % teiler) * 2 >= teiler ? 1 : 0);
    }
    // Read back "<zehntel/10>.<zehntel%10>" as the nearest float.
    char text[48];
    char* p = text;
    if (negativ && zehntel != 0)
        *p++ = '-';
    p = std::to_chars(p, text + sizeof text - 3, zehntel / 10).ptr;
    *p++ = '.';
    *p++ = static_cast<char>('0' + zehntel % 10);
    float wert = 0;
    std::from_chars(text, p, wert);
    return wert;
}

LocErgebnis LocBerechnen(std::string& eigener, std::string& anderer) {
    eigener = text::trim(text::upper(eigener));
    anderer = text::trim(text::upper(anderer));
    LocErgebnis fehler;
    fehler.Fehler = -1;
    const auto laengeOk = [](const std::string& s) {
        const std::size_t n = text::length(s);
        return n == 4 || n == 6;
    };
    if (!laengeOk(eigener) || !laengeOk(anderer))
        return fehler;
    if (text::length(eigener) == 4)
        eigener += "LL";
    if (text::length(anderer) == 4)
        anderer += "LL";
    if (!LocOK(eigener) || !LocOK(anderer))
        return fehler;
    const LocPosition p1 = LocKoordinaten(eigener);
    const LocPosition p2 = LocKoordinaten(anderer);
    const double km = LocQRB(p1.lat, p1.lon, p2.lat, p2.lon);
    const float grad = LocQTF(p1.lat, p1.lon, p2.lat, p2.lon);
    LocErgebnis e;
    e.km = static_cast<float>(km);
    e.Grad = GradGerundet(grad);
    e.GradDez = GradMitKommastelle(grad);
    e.Fehler = 0;
    return e;
}

std::string LocErgaenzen(std::string_view feld) {
    std::string s = text::trim(feld);
    switch (text::length(s)) {
    case 2:
        return s + "45MM";
    case 3:
        return s + "5MM";
    case 4:
        return s + "MM";
    case 5:
        return s + "M";
    default:
        return s;
    }
}

std::string LocGrossfeld(std::string_view locator) {
    return text::upper(text::left(text::trim(locator), 4));
}

} // namespace orv
