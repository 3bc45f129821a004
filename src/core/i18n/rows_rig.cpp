#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1220-1269: rotator and rig control.
std::span<const TextRow> rigRows() {
    static constexpr TextRow kRows[] = {
        {1220, "Rotor"},
        {1221, "Transceiver"},
        {1222, "Rotor verwenden"},
        {1223, "Transceiver verwenden"},
        {1224, "Modell (Suche nach Hersteller oder Modell):"},
        {1225, "Gerät oder Host:Port:"},
        {1226, "Baudrate (0 = Vorgabe des Modells):"},
        {1227, "Transverter-Versatz in MHz (zur Frequenz des Transceivers addiert):"},
        {1228, "Bitte ein Modell aus der Liste wählen."},
        {1229, "Bitte das Gerät oder Host:Port angeben."},
        {1230, "Ungültiger Transverter-Versatz:"},
        {1231, "Antenne drehen"},
        {1232, "Antenne"},
        {1233, "Rotor nicht erreichbar, neuer Versuch läuft"},
        {1234, "Transceiver nicht erreichbar, neuer Versuch läuft"},
        {1235, "Strg+R"},
        {1236, "Antenne zum Locator drehen"},
        {1237, "Strg+Umschalt+R"},
        {1238, "Rotor anhalten"},
        {1239, "Rotor nicht erreichbar:"},
        {1240, "Transceiver nicht erreichbar:"},
        {1241, "Ungültige Richtung oder ungültiger Locator:"},
        {1242, "Kein eigener Locator eingestellt"},
        {1243, "Ungültige Angabe Host:Port:"},
    };
    return kRows;
}

} // namespace orv
