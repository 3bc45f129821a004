#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 950-1099: the options dialog.
std::span<const TextRow> optionsRows() {
    static const TextRow rows[] = {
        {950, "Optionen"},
        {951, "Allgemein"},
        {952, "Bake und CW"},
        {953, "OPCall-Liste"},
        {954, "Audio"},
        {955, "Sicherung"},
        {956, "Zeit"},
        {957, "MODE-Liste"},
        {958, "Ausbreitung"},
        {959, "DDE"},
        {960, "Contest-Definitionen"},
        {961, "OK"},
        {962, "Farben der Eingabefelder"},
        {963, "Feld mit dem Fokus"},
        {964, "Nicht editierbare Felder"},
        {965, "Farbe wählen..."},
        {966, "Richtung mit Nachkommastellen"},
        {967, "Sprach-Bake"},
        {968, "(kein Port)"},
        {969, "Bitte eine CW-Geschwindigkeit wählen!"},
        {970, "Die Einstellungen konnten nicht gespeichert werden:"},
        {971, "Die Tondateien werden mit der neuen Geschwindigkeit erstellt..."},
        {972, "Pause"},
        {973, "Ausbreitung eingeben:"},
        {974, "Ungültige Ausbreitung!"},
        {975, "Nach oben"},
        {976, "Nach unten"},
        {977, "Datei ändern"},
        {978, "Text hinzufügen"},
        {979, "Kein gültiger Sicherungsordner!"},
        {980, "Sicherungsintervall: 1 bis 1440 Minuten!"},
        {981, "Für das offene Log übernehmen"},
        {982, "Gewicht: eine ganze Zahl von 0 bis 32767!"},
    };
    return rows;
}

} // namespace orv
