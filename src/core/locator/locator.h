#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

// Maidenhead locator arithmetic: legal locators, positions, distance (QRB)
// and bearing (QTF). Every km that enters the score is made here, so the
// constants and the roundings are part of the contest result and must not be
// "improved" (no library arc cosine, no earth radius, no full-precision pi).
namespace orv {

// The result of one calculation. Fehler == 0: the record is valid;
// Fehler == -1: no result, the other fields are meaningless (left zero).
struct LocErgebnis {
    float km = 0;            // whole km, already rounded up (1 for one sub-square)
    std::int16_t Grad = 0;   // bearing to a whole degree, 0..360 (360 is not folded to 0)
    std::int16_t Fehler = 0; // 0 valid, -1 no result
    float GradDez = 0;       // the same bearing with one decimal place

    bool ok() const { return Fehler == 0; }
};

// A sub-square centre in degrees: latitude positive north, longitude positive east.
struct LocPosition {
    double lat = 0;
    double lon = 0;
};

// Thrown by LocQRB/LocQTF (and so by LocBerechnen) when the formula divides by
// zero: exactly antipodal points in LocQRB, a far point on the north pole in
// LocQTF. It is a run-time failure of the calling routine, not an input error:
// the ui shows it like any other failure.
class LocRechenfehler : public std::domain_error {
public:
    LocRechenfehler() : std::domain_error("Division durch Null") {}
};

// Character test of a 6-character upper-case locator: positions 1-2 "A".."R",
// 3-4 "0".."9", 5-6 "A".."X". Does not trim or fold case; any other length
// is refused.
bool LocOK(std::string_view locator);

// Centre of the sub-square of a locator that passes LocOK.
LocPosition LocKoordinaten(std::string_view locator6);

// Distance in whole km between two points given in degrees, rounded up; 1 when
// both points are the same. Throws LocRechenfehler for exactly antipodal points
// and for distinct points so close that the cosine rounds to 1 (never two
// sub-square centres).
double LocQRB(double lat1, double lon1, double lat2, double lon2);

// Bearing in degrees from point 1 to point 2 (0 when the points are the same).
// Throws LocRechenfehler when point 2 lies exactly on the north pole.
float LocQTF(double lat1, double lon1, double lat2, double lon2);

// Distance and bearing from `eigener` to `anderer`. Both strings are rewritten
// in place: folded to upper case, trimmed and, when 4 long, extended by "LL"
// (the centre sub-square L/L stands for the square). Any length but 4 or 6, or
// an illegal character, gives Fehler = -1; the rewrite has happened by then.
// Throws LocRechenfehler for exactly antipodal sub-squares.
LocErgebnis LocBerechnen(std::string& eigener, std::string& anderer);

// The two bearings of the record from LocQTF's value (0..360): `Grad` rounds half to
// even (89.5 -> 90, 90.5 -> 90); `GradDez` is the value as its 7 significant
// digits read, rounded half away from zero to one decimal (89.25 -> 89.3).
std::int16_t GradGerundet(float grad);
float GradMitKommastelle(float grad);

// The copy of a partly typed locator field that the preview while typing
// hands to LocBerechnen: the trimmed text completed to the centre of what has
// been typed ("JN" -> "JN45MM", "JN7" -> "JN75MM", "JN78" -> "JN78MM",
// "JN78D" -> "JN78DM"). Other lengths come back trimmed and otherwise unchanged.
std::string LocErgaenzen(std::string_view feld);

// The large square (Grossfeld) of a locator: its first four characters,
// trimmed and folded to upper case. Shorter input comes back as it is, folded.
std::string LocGrossfeld(std::string_view locator);

} // namespace orv
