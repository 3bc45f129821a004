#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1320-1369: a contest shared by several positions.
std::span<const TextRow> sharedRows() {
    static constexpr TextRow kRows[] = {
        {1320, "Ungültige Server-Adresse, erwartet postgresql://BENUTZER@HOST:PORT/DATENBANK:"},
        {1321, "Ungültiger Positionsname (1 bis 15 Buchstaben, Ziffern, - oder _):"},
        {1322, "Log-Server nicht erreichbar:"},
        {1323, "Der Log-Server führt das gemeinsame Log in einer anderen Version; dieses Programm "
               "schreibt nicht hinein. Version auf dem Server:"},
        {1324, "Das Log ist nicht gemeinsam:"},
        {1325, "Wartende QSOs:"},
        {1326, "Letzte Verbindung zum Server:"},
        {1327, "Konflikte:"},
        {1328, "Der Wettbewerb ist auf dem Server nicht bekannt:"},
        {1329, "Gesendet:"},
        {1330, "Empfangen:"},
        {1331, "offline"},
        {1332, "Dieses Programm wurde ohne PostgreSQL-Anbindung gebaut."},
        {1333, "noch nie"},
        {1334, "hier"},
        {1335, "Server"},
        {1336, "Doppelte Nummern:"},
        {1337, "Log-Server nicht erreichbar; die Änderungen warten im Log:"},
        {1338, "Positionen"},
        {1339, "Position"},
        {1340, "Band"},
        {1341, "Operator"},
        {1342, "Letztes QSO"},
        {1343, "Wartend"},
        {1344, "Meine Fassung behalten"},
        {1345, "Fassung des Servers nehmen"},
        {1346, "Dieses Band hält schon die Position:"},
        {1347, "Konflikte des gemeinsamen Logs"},
        {1348, "Schließen"},
        {1349, "online"},
        {1351, "Gemeinsames Log, Server (leer: allein):"},
        {1352, "Position:"},
        {1353, "Passwort des Servers:"},
        {1354, "Station auf dem Band:"},
        {1355, "Großfelder"},
        {1356, "Ein Log dieses Namens gibt es hier schon:"},
        {1357, "Der Server ist eingerichtet. Die Positionen geben als Server an:"},
        {1358, "Kein PostgreSQL-Server gefunden (Paket postgresql; sonst --cluster VERSION/NAME "
               "oder --data-dir ORDNER):"},
        {1359, "Ein Schritt der Einrichtung des Servers ist fehlgeschlagen:"},
        {1360, "Den Server einrichten dürfen nur root (sudo) und sein Besitzer:"},
        {1361, "Mehrere QSOs tragen diese Nummer; --position wählt die Position:"},
        {1362, "Diesen Konflikt gibt es nicht (die Nummer steht vorn in der Liste von sync):"},
        {1365, "QSOs der anderen Positionen"},
        {1366, "gelöscht"},
        {1367, "Rufzeichen tippen filtert. Enter korrigiert, Entf löscht oder stellt wieder her, "
               "Esc schließt."},
        {1368, "Die Änderung konnte nicht gespeichert werden:"},
    };
    return kRows;
}

} // namespace orv
