#pragma once

#include <QDialog>
#include <filesystem>

#include "core/app/app_paths.h"

class QComboBox;
class QFileSystemModel;
class QLabel;
class QListWidget;
class QTreeView;

namespace orv {
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

// The log folders window `Form17`: one of three panels, copying logs out of
// `Logs` (`Picture1`), deleting them (`Picture2`) or copying them in
// (`Picture3`). The rules are core's (log_folders.h); the window lists the
// files and folders and passes the selection on.
class LogFoldersWindow : public QDialog {
    Q_OBJECT
public:
    enum class Panel { CopyOut, Delete, CopyIn };

    // `openLog`: the file of the log open in the main window, never offered
    // for deletion nor overwritten.
    LogFoldersWindow(const AppPaths& paths, std::filesystem::path openLog, const Texts& texts,
                     Dialogs& dialogs, Panel panel, QWidget* parent = nullptr);

    // The folder chosen in `Dir1` (copy out) and `Dir2` (copy in).
    std::filesystem::path targetFolder() const;
    void setTargetFolder(const std::filesystem::path& folder);
    std::filesystem::path sourceFolder() const;
    void setSourceFolder(const std::filesystem::path& folder);

    // The buttons, public so that tests press them as a user does.
    void copyOut();    // Command1
    void newFolder();  // Command2
    void deleteLogs(); // Command4
    void copyIn();     // Command7

private:
    QWidget* buildCopyOut();
    QWidget* buildDelete();
    QWidget* buildCopyIn();
    QTreeView* folderTree(const char* name, const char* driveName, QWidget* parent);
    void refreshLists();
    static std::filesystem::path folderOf(const QTreeView* tree);
    // Copies `files` into `target`; `in`: into the logs folder, each tested.
    void copy(std::vector<std::filesystem::path> files, const std::filesystem::path& target,
              bool in);
    std::vector<std::filesystem::path> selected(const QListWidget* list,
                                                const std::filesystem::path& folder) const;

    const AppPaths paths_;
    const std::filesystem::path openLog_;
    const Texts& texts_;
    Dialogs& dialogs_;
    QListWidget* file1_ = nullptr;
    QListWidget* file2_ = nullptr;
    QListWidget* file3_ = nullptr;
    QTreeView* dir1_ = nullptr;
    QTreeView* dir2_ = nullptr;
    QLabel* progress_ = nullptr; // Label4
};

} // namespace orv::ui
