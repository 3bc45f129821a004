#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "ui/options/options_page.h"

namespace orv::keying {
class AudioRecorder;
}

namespace orv::ui {

class OptionsDialog;
class Startup;

// `MnOptionenA`: opens the options dialog over the main window and, when it
// was confirmed, gives the window the new values at once: colours, the mode
// switch and lists, the time offset, the captions (`Beschriften`), the
// backup (`LadeSichernOptionen`) and the remote control's publishing keys.
// The CW window and the beacon read their settings at each use.
class OptionsMenu final : public QObject {
    Q_OBJECT
public:
    explicit OptionsMenu(Startup& startup);
    ~OptionsMenu() override;

    void open();
    // After a confirmed dialog: the window takes the saved settings.
    void apply();

    // Replaceable by tests: how the dialog runs (modal by default), and the
    // choosers, ports and sound input the dialog's pages use.
    std::function<void(OptionsDialog&)> run;
    std::function<std::vector<PortOffer>()> ports;
    decltype(OptionsContext::openFile) openFile;
    decltype(OptionsContext::chooseFolder) chooseFolder;
    decltype(OptionsContext::chooseColour) chooseColour;
    decltype(OptionsContext::input) input;
    std::function<std::unique_ptr<keying::AudioRecorder>()> makeRecorder;

private:
    Startup& s_;
};

void installOptionsMenu(Startup& startup);

} // namespace orv::ui
