#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1150-1199: the HAM III import, the log folders window, the printout.
std::span<const TextRow> importRows() {
    static constexpr TextRow rows[] = {
        {1150, "Keine HAM-III-Zeile"},
        {1151, "Zeile"},
        {1152, "QSOs gespeichert:"},
        {1153, "Zeilen abgewiesen:"},
        {1154, "Zeilen mit unbekanntem Band:"},
        {1155, "Seite"},
        {1156, "von"},
        {1157, "Contest:"},
        {1158, "Rufzeichen:"},
        {1159, "Locator:"},
        {1160, "Band:"},
        {1161, "Zusammenfassung"},
        {1162, "Score:"},
        {1163, "Duper:"},
        {1164, "Gelöschte QSOs:"},
        {1165, "Drucken..."},
        {1166, "Vorschau..."},
        {1167, "Als PDF speichern..."},
        {1168, "In diesen Ordner kann nicht geschrieben werden:"},
        {1169, "Die Datei kann nicht gelesen werden:"},
        {1170, "Keine Auswertung zum Drucken: zuerst auswerten"},
        {1171, "Die Datei kann nicht gelöscht werden:"},
        {1172, "Der Ordner kann nicht angelegt werden:"},
        {1173, "Fertig"},
        {1174, "Log wird gerade benutzt und bleibt"},
    };
    return rows;
}

} // namespace orv
