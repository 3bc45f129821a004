#include "core/i18n/builtin_texts.h"

namespace orv {
namespace {

// Rows 501-899: captions of the main window and its panels, the chooser, the
// key help, the evaluation windows, the station log and the CW window, and
// the tool's messages, which the classic table gave as fixed texts.
constexpr TextRow kRows[] = {
    {501, "Aus&wertung"},
    {502, "&Neues Log anlegen"},
    {503, "Wird geladen..."},
    {504, "%1 Rufzeichen gefunden"},
    {505, "Öffnen..."},
    {506, "ADIF-Frequenzen"},
    {507, "Punkte gesamt:"},
    {508, "Doppelte:"},
    {509, "Fehlerhafte:"},
    {510, "JJJJ-MM-TT HH:MM:SS"},
    {511, "EDI-Export"},
    {512, "Max."},
    {513, "Eingabe oben/unten"},
    {514, "Datum/Zeit"},
    {515, "QSL erh"},
    {520, "Nächstes Eingabefeld"},
    {521, "Vorheriges Eingabefeld"},
    {522, "QSO übernehmen / Korrektur speichern"},
    {523, "Korrektur oder Anzeige schließen"},
    {524, "Tastenbelegung"},
    {525, "Letztes Rufzeichen und Locator zurückholen"},
    {526, "Vorheriges / nächstes Band"},
    {527, "Stationslog"},
    {528, "Rufzeichen und Locator aus der Liste übernehmen"},
    {529, "Nur den Locator aus der Liste übernehmen"},
    {530, "Eingabezeile löschen"},
    {531, "Früheres QSO als gelöscht markieren (Doppelverbindung)"},
    {532, "CW-Fenster ein/aus"},
    {533, "Bake ein/aus"},
    {534, "Gearbeitete Grossfelder"},
    {535, "Name eingeben"},
    {536, "Operator wählen"},
    {537, "QSL Yes/No"},
    {538, "Zeit in der Korrekturzeile"},
    {540, "Leertaste"},
    {541, "Umschalt+Leertaste"},
    {542, "F10, Strg+W"},
    {543, "Strg+B, Pause"},
    {544, "Strg+L"},
    {545, "Strg+N"},
    {546, "Strg+O"},
    {547, "Strg+Q"},
    {548, "Strg+T"},
    {550, "AUR - Aurora"},
    {551, "AUE - Aurora-E"},
    {552, "BS - Rückstreuung"},
    {553, "ECH - EchoLink"},
    {554, "EME - Erde-Mond-Erde"},
    {555, "ES - Sporadic-E"},
    {556, "FAI - Feldlinienparallele Irregularitäten"},
    {557, "F2 - F2-Reflexion"},
    {558, "INTERNET - über das Internet"},
    {559, "ION - Ionosphärenstreuung"},
    {560, "IRL - IRLP"},
    {561, "MS - Meteorscatter"},
    {562, "RPT - Relais oder Transponder"},
    {563, "RS - Regenscatter"},
    {564, "SAT - Satellit"},
    {565, "TEP - Transäquatorial"},
    {566, "TR - Troposphärische Überreichweite"},
    {600, "Unbekannter Befehl"},
    {601, "Wert fehlt"},
    {602, "Ordner fehlt"},
    {603, "Aufruf"},
    {604, "Angabe fehlt"},
    {605, "siehe --help"},
    {606, "zehn ganze Zahlen, durch Kommas getrennt"},
    {607, "keiner angegeben, und AConDat enthält keinen CName"},
    {608, "Keine Sprachdatei dieses Namens. Vorhandene Sprachen:"},
    {621, "Korrektur: Enter speichert, Esc bricht ab."},
    {622, "Geändert; die Änderung geht an alle Positionen."},
    {623, "Die QSOs der anderen Positionen konnten nicht gelesen werden:"},
};

} // namespace

std::span<const TextRow> generalRows() {
    return kRows;
}

} // namespace orv
