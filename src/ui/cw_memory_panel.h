#pragma once

#include <QGroupBox>
#include <functional>

class QCheckBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace orv {
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class CwInput;

// `Frame2`: the settings of one memory (caption, "[Fn]" flag, text with
// macros) with the macro list and the preview.
class CwMemoryPanel : public QGroupBox {
    Q_OBJECT
public:
    CwMemoryPanel(const Texts& texts, Settings& settings, Dialogs& dialogs,
                  QWidget* parent = nullptr);

    // Fills the panel from slot k's settings and gives the flag the focus.
    void openSlot(int k);
    int slot() const { return slot_; }
    CwInput* editor() const { return editor_; }

    // `Command4`: checks and writes the slot; false leaves the panel open.
    bool save();

    // The preview (`Command5`) of a text, expanded without tests.
    std::function<void(const QString&)> onPreview;
    // The panel is done (saved or cancelled).
    std::function<void()> onClosed;
    // The slot's settings were written.
    std::function<void(int)> onSaved;

protected:
    void changeEvent(QEvent* e) override;

private:
    void fillMacros();
    const Texts& texts_;
    Settings& settings_;
    Dialogs& dialogs_;
    int slot_ = -1;
    QCheckBox* fOn_ = nullptr;
    QLineEdit* fText_ = nullptr;
    CwInput* editor_ = nullptr;
    QListWidget* macros_ = nullptr;
};

// IText(350) in a stop box, then the faulty characters selected in the box.
void showMacroError(Dialogs& dialogs, const Texts& texts, QLineEdit* box, int start, int length);

} // namespace orv::ui
