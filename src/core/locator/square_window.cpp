#include "core/locator/square_window.h"

#include "core/util/text.h"

namespace orv {

namespace {

// The four characters of a large square while the walk moves over the grid.
struct Feld {
    char c1, c2, c3, c4;
    std::string text() const { return {c1, c2, c3, c4}; }
};

// One letter forward, "R" wrapping to "A".
void naechsterBuchstabe(char& c) {
    c = c >= 'R' ? 'A' : static_cast<char>(c + 1);
}

} // namespace

LocFenster LocUnt(std::string_view eigenerLocator, std::string_view gearbeitet, Beeper& beeper) {
    LocFenster w;
    const std::string eigen = text::upper(text::trim(eigenerLocator));
    if (eigen.size() < 4) {
        w.gezeichnet = true;
        return w;
    }
    constexpr int m = LocFenster::kMitte;
    Feld f{eigen[0], eigen[1], eigen[2], eigen[3]};
    w.zelle[m][m] = {f.text(), LocFarbe::Magenta};

    // West along the centre row. The western edge is the one place that does
    // not wrap: the walk beeps and gives up, leaving the rest empty.
    for (int col = m - 1; col >= 0; --col) {
        if (--f.c3 < '0') {
            f.c3 = '9';
            if (--f.c1 < 'A') {
                beeper.beep();
                return w;
            }
        }
        w.zelle[m][col].text = f.text();
    }

    // North up the western column, to reach the top-left cell. Passing the
    // top of the latitudes moves the first character on as well.
    for (int row = m - 1; row >= 0; --row) {
        if (++f.c4 > '9') {
            f.c4 = '0';
            if (++f.c2 > 'R') {
                f.c2 = 'A';
                naechsterBuchstabe(f.c1);
            }
        }
        w.zelle[row][0].text = f.text();
    }

    // Every row from the top-left cell: eastwards across, southwards down.
    const char startC1 = f.c1, startC3 = f.c3;
    for (int row = 0; row < LocFenster::kSeite; ++row) {
        f.c1 = startC1;
        f.c3 = startC3;
        for (int col = 0; col < LocFenster::kSeite; ++col) {
            LocFeld& z = w.zelle[row][col];
            z.text = f.text();
            if (gearbeitet.find(z.text) != std::string_view::npos)
                z.farbe = LocFarbe::Cyan;
            if (row == m && col == m && z.farbe == LocFarbe::Cyan)
                z.farbe = LocFarbe::Gruen;
            if (++f.c3 > '9') {
                f.c3 = '0';
                naechsterBuchstabe(f.c1);
            }
        }
        if (--f.c4 < '0') {
            f.c4 = '9';
            f.c2 = f.c2 <= 'A' ? 'R' : static_cast<char>(f.c2 - 1);
        }
    }
    w.gezeichnet = true;
    return w;
}

} // namespace orv
