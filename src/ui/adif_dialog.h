#pragma once

#include <QFrame>
#include <array>
#include <filesystem>

#include "core/logstore/bands.h"

class QLineEdit;
class QWidget;

namespace orv {
class Clock;
class CountryList;
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// The frequency panel of the ADIF export ("ADIF-QRG's"): one box
// `Text1(i)` per band in MHz, kept as `ADIFQRG<i>` in QB-OPTION. Opening
// loads the boxes, `Command8` stores them, `Command9` hides the panel.
class AdifQrgPanel : public QFrame {
    Q_OBJECT
public:
    AdifQrgPanel(Settings& settings, const Texts& texts, QWidget* parent = nullptr);
    void open();
    void store();

private:
    Settings& settings_;
    std::array<QLineEdit*, kBandCount> boxes_{};
};

// What the exports of the evaluation window need beside the log file.
struct ExportContext {
    QWidget* parent;
    Settings& settings;
    const Texts& texts;
    Dialogs& dialogs;
    Clock& clock;
    std::filesystem::path startFolder; // where the save dialog starts
    const CountryList* countries;      // may be null
};

// `Command5`: all bands of the log as an ADIF file. Asks for the path,
// ends with IText(183) and the path. Failures are shown, nothing is thrown.
void exportAdif(const ExportContext& ctx, const std::filesystem::path& logFile);
// `Command4`: the text listing. Asks for the path, then IText(400) whether
// the statistics go into the file (Cancel writes nothing).
void exportTextListing(const ExportContext& ctx, const std::filesystem::path& logFile);

} // namespace orv::ui
