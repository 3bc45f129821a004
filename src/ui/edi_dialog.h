#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "core/app/app_paths.h"
#include "core/submission/edi.h"

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QWidget;

namespace orv {
class Dialogs;
class Settings;
class Texts;
struct Evaluation;
} // namespace orv

namespace orv::ui {

// The EDI export `Form6`: the 47 boxes `Text1(0)` .. `Text1(46)` of the
// entry file's header, the band list `Combo2`, and the buttons that write
// the file and store a band's template. What the boxes hold is decided by
// core (last contents, templates, the evaluation's figures); the dialog only
// carries the texts between its boxes and those calls.
class EdiDialog : public QDialog {
    Q_OBJECT
public:
    // Evaluates a band in the evaluation window and returns it (null when
    // the window has no log).
    using EvaluateBand = std::function<const Evaluation*(int band)>;

    EdiDialog(Settings& settings, const Texts& texts, Dialogs& dialogs, const AppPaths& paths,
              int band, EvaluateBand evaluateBand, QWidget* parent = nullptr);

    EdiBoxes boxes() const;
    void setBoxes(const EdiBoxes& boxes);
    int band() const;

    // Choosing a band in `Combo2`: the evaluation window follows, then the
    // band's template and its figures fill the boxes.
    void chooseBand(int band);
    // `Command1`: writes the file, then offers the editor and the upload.
    // `Command3`: stores the band's template. `Command4`: uploads the file
    // just written, or one the user chooses.
    void writeFile();
    void saveTemplate();
    void upload();

    void done(int r) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildUi();
    void templateCaption();
    std::string cwMode() const;
    QWidget* box(int i) const;
    void afterWriting(const std::filesystem::path& written);

    Settings& settings_;
    const Texts& texts_;
    Dialogs& dialogs_;
    AppPaths paths_;
    EvaluateBand evaluateBand_;
    const Evaluation* ev_ = nullptr;
    std::array<QLineEdit*, kEdiBoxes> lines_{}; // null for the remarks box
    QPlainTextEdit* remarks_ = nullptr;         // Text1(35)
    QComboBox* bandBox_ = nullptr;              // Combo2
    QPushButton* templateButton_ = nullptr;     // Command3
    std::filesystem::path uploadPath_;          // the file `Command4` sends next
};

} // namespace orv::ui
