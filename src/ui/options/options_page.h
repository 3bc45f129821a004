#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/util/ports.h"
#include "core/util/result.h"

namespace orv::keying {
class AudioRecorder;
}

namespace orv::ui {

// A serial device offered in the port lists.
struct PortOffer {
    std::string path;
    std::string description;
};

// What the pages of the options dialog reach beyond their widgets. The
// choosers are replaceable, so tests answer them without a modal loop.
struct OptionsContext {
    const Texts& texts;
    Dialogs& dialogs;
    Clock& clock;
    AppPaths paths;
    // The sound input of the recorder page.
    keying::AudioRecorder& recorder;
    // The serial devices that are there and free now.
    std::function<std::vector<PortOffer>()> ports;
    // A file to open (empty on cancel), a folder, a colour (invalid on cancel).
    std::function<QString(QWidget*, const QString& title, const QString& filter)> openFile;
    std::function<QString(QWidget*, const QString& title, const QString& start)> chooseFolder;
    std::function<QColor(QWidget*, const QColor& start)> chooseColour;
    // An input box: the text, or nothing on cancel.
    std::function<std::optional<QString>(QWidget*, const QString& prompt, const QString& proposal)>
        input;

    QString t(int row) const;
    // The text without its accelerator "&".
    QString plain(int row) const;
};

// One page of the dialog: it shows the settings it owns, checks them when the
// dialog is confirmed, and writes them into the settings it is given.
class OptionsPage : public QWidget {
    Q_OBJECT
public:
    OptionsPage(OptionsContext& ctx, const char* objectName, int titleRow, QWidget* parent);

    QString title() const { return ctx_.plain(titleRow_); }
    virtual void load(const Settings& s) = 0;
    // A refusal names the text to show and the control to focus.
    virtual Status validate() { return okStatus(); }
    virtual void save(Settings& s) = 0;
    // After the settings file was replaced: files that follow the settings.
    virtual void saved() {}
    // The dialog was cancelled.
    virtual void cancelled() {}

protected:
    OptionsContext& ctx_;

private:
    int titleRow_;
};

} // namespace orv::ui
