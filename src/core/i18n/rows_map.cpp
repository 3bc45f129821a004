#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1270-1319: the map, the rate graph and the worked bands.
std::span<const TextRow> mapRows() {
    static constexpr TextRow kRows[] = {
        {1270, "Karte"},
        {1271, "Rate"},
        {1272, "Karte und Rate"},
        {1273, "Strg+M"},
        {1274, "Ungültige Intervalllänge in Minuten (1 bis 1440):"},
        {1275, "Ungültige Bildgröße (Breite x Höhe, 16 bis 10000 Punkte):"},
        {1276, "Ungültiger Radius in km:"},
        {1277, "Das Bild braucht die Endung .png oder .svg:"},
        {1278, "Das Bild konnte nicht geschrieben werden:"},
        {1279, "Keine Küstenlinien (Paket gmt-gshhg-low fehlt): nur das Locatorgitter"},
        {1280, "km"},
        {1281, "QSOs"},
        {1282, "Punkte"},
        {1283, "Alle Bänder"},
        {1284, "Dieses Band"},
        {1285, "10 Minuten"},
        {1286, "60 Minuten"},
        {1287, "QSOs im Zeitbereich"},
        {1288, "Keine QSOs auf diesem Band"},
        {1289, "Es fehlt -o DATEI.png oder -o DATEI.svg"},
        {1290, "Pos1: ganzes Band, Mausrad: Zoom, Ziehen: verschieben"},
        {1291, "Gearbeitet auf:"},
        {1292, "Küstenlinien:"},
        {1293, "Der eigene Locator ist ungültig:"},
    };
    return kRows;
}

} // namespace orv
