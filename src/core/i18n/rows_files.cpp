#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1100-1149: the EDI editor and the upload.
std::span<const TextRow> filesRows() {
    static const TextRow rows[] = {
        {1100, "UPLoading..."},
        {1101, "Die Datei kann nicht gelesen werden:"},
        {1102, "Kein Contest-Server eingestellt (Abschnitt [EDIUpload], Schlüssel Host, in "
               "OrvantaContest.INI)."},
        {1103, "Keine Verbindung zum Server:"},
        {1104, "Anmeldung am Server abgelehnt:"},
        {1105, "Passwort für %USER% auf %HOST%:"},
        {1106, "Ö&ffnen"},
        {1107, "Druck&vorschau"},
        {1108, "Die Datei kann nicht geschrieben werden:"},
        {1109, "Das Passwort kann nicht gespeichert werden:"},
        {1110, "Upload abgebrochen."},
        {1111, "Hochgeladen als"},
        {1112, "Open..."},
    };
    return rows;
}

} // namespace orv
