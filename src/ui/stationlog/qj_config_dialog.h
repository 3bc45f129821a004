#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace orv {
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// `QjConfig`: the station log's pick lists, one entry a line, written back
// to their sections on OK only.
class QjConfigDialog final : public QDialog {
    Q_OBJECT
public:
    QjConfigDialog(Settings& settings, const Texts& texts, QWidget* parent = nullptr);

    void accept() override;

private:
    Settings& settings_;
    QPlainTextEdit *qrg_, *power_, *antenna_, *myLocator_;
};

} // namespace orv::ui
