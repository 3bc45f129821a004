#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/app/app_paths.h"

class QPlainTextEdit;
class QTableWidget;

namespace orv {
class CountryList;
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

// The statistics window `Form14`: the logs of one folder in `MSFlexGrid1`,
// each with a mark the user toggles, and the report over the marked logs in
// `Text2`. The logs are only read; the report can be saved and read back.
class StatsWindow : public QDialog {
    Q_OBJECT
public:
    StatsWindow(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                QWidget* parent = nullptr);
    ~StatsWindow() override;

    // Lists the logs of a folder that pass the version test, none marked.
    void listFolder(const std::filesystem::path& folder);
    const std::filesystem::path& folder() const { return folder_; }
    // A click on a row toggles its mark.
    void toggle(int row);
    bool marked(int row) const;
    std::vector<std::string> markedLogs() const;
    QString report() const;

    // `Command1` .. `Command4`.
    void chooseFolder();
    void run();
    void openReport();
    void saveReport();

private:
    const AppPaths paths_;
    const Texts& texts_;
    Dialogs& dialogs_;
    std::unique_ptr<CountryList> countries_;
    std::filesystem::path folder_;
    std::vector<std::string> logs_;
    std::vector<bool> marks_;
    QTableWidget* grid_ = nullptr;   // MSFlexGrid1
    QPlainTextEdit* text_ = nullptr; // Text2
};

} // namespace orv::ui
