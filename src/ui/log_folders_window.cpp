#include "ui/log_folders_window.h"

#include <QComboBox>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QTreeView>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/submission/log_folders.h"
#include "core/util/ports.h"
#include "platform/qt_dialogs.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace fs = std::filesystem;

namespace {

QString qpath(const fs::path& p) {
    return QString::fromStdString(p.string());
}

// Captions carry the accelerator mark of the old forms; a title does not.
QString plain(const std::string& s) {
    return q(s).remove('&');
}

QListWidget* fileList(const char* name, QWidget* parent) {
    auto* l = new QListWidget(parent);
    l->setObjectName(name);
    l->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return l;
}

QPushButton* button(const char* name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

} // namespace

LogFoldersWindow::LogFoldersWindow(const AppPaths& paths, fs::path openLog, const Texts& texts,
                                   Dialogs& dialogs, Panel panel, QWidget* parent)
    : QDialog(parent), paths_(paths), openLog_(std::move(openLog)), texts_(texts),
      dialogs_(dialogs) {
    setObjectName("Form17");
    const int action = panel == Panel::CopyOut ? 402 : panel == Panel::CopyIn ? 403 : 357;
    setWindowTitle(plain(texts_(401)) + " " + plain(texts_(action)) + "...");
    auto* top = new QVBoxLayout(this);
    QWidget* panels[] = {buildCopyOut(), buildDelete(), buildCopyIn()};
    for (QWidget* p : panels) {
        top->addWidget(p, 1);
        p->hide();
    }
    panels[static_cast<int>(panel)]->show();
    progress_ = new QLabel(this);
    progress_->setObjectName("Label4");
    top->addWidget(progress_);
    auto* close = button("Abbrechen", q(texts_(11)), this);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(close);
    top->addLayout(row);
    refreshLists();
    resize(640, 480);
}

QTreeView* LogFoldersWindow::folderTree(const char* name, const char* driveName, QWidget* parent) {
    auto* model = new QFileSystemModel(parent);
    model->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    model->setRootPath("/");
    auto* tree = new QTreeView(parent);
    tree->setObjectName(name);
    tree->setModel(model);
    for (int c = 1; c < model->columnCount(); ++c)
        tree->hideColumn(c);
    tree->header()->hide();
    // The drives of the old window are the mounted file systems here.
    auto* drives = new QComboBox(parent);
    drives->setObjectName(driveName);
    for (const QStorageInfo& v : QStorageInfo::mountedVolumes())
        if (v.isValid() && v.isReady())
            drives->addItem(v.rootPath());
    connect(drives, &QComboBox::currentTextChanged, tree,
            [tree, model](const QString& root) { tree->setCurrentIndex(model->index(root)); });
    tree->setProperty("drives", QVariant::fromValue(static_cast<QObject*>(drives)));
    return tree;
}

QWidget* LogFoldersWindow::buildCopyOut() {
    auto* p = new QWidget(this);
    p->setObjectName("Picture1");
    auto* l = new QGridLayout(p);
    file1_ = fileList("File1", p);
    dir1_ = folderTree("Dir1", "Drive1", p);
    l->addWidget(new QLabel(q(texts_(404)), p), 0, 0);
    l->addWidget(file1_, 1, 0, 2, 1);
    l->addWidget(new QLabel(q(texts_(405)), p), 0, 1);
    l->addWidget(qobject_cast<QWidget*>(dir1_->property("drives").value<QObject*>()), 1, 1);
    l->addWidget(dir1_, 2, 1);
    auto* buttons = new QHBoxLayout;
    auto* copy = button("Command1", q(texts_(402)), p);
    auto* make = button("Command2", q(texts_(407)), p);
    connect(copy, &QPushButton::clicked, this, &LogFoldersWindow::copyOut);
    connect(make, &QPushButton::clicked, this, &LogFoldersWindow::newFolder);
    buttons->addWidget(copy);
    buttons->addWidget(make);
    l->addLayout(buttons, 3, 0, 1, 2);
    setTargetFolder(paths_.appPath);
    return p;
}

QWidget* LogFoldersWindow::buildDelete() {
    auto* p = new QWidget(this);
    p->setObjectName("Picture2");
    auto* l = new QVBoxLayout(p);
    file2_ = fileList("File2", p);
    l->addWidget(new QLabel(q(texts_(413)), p));
    l->addWidget(file2_, 1);
    auto* del = button("Command4", q(texts_(357)), p);
    connect(del, &QPushButton::clicked, this, &LogFoldersWindow::deleteLogs);
    l->addWidget(del);
    return p;
}

QWidget* LogFoldersWindow::buildCopyIn() {
    auto* p = new QWidget(this);
    p->setObjectName("Picture3");
    auto* l = new QGridLayout(p);
    dir2_ = folderTree("Dir2", "Drive2", p);
    file3_ = fileList("File3", p);
    l->addWidget(qobject_cast<QWidget*>(dir2_->property("drives").value<QObject*>()), 0, 0);
    l->addWidget(dir2_, 1, 0, 2, 1);
    l->addWidget(new QLabel(q(texts_(414)), p), 0, 1);
    l->addWidget(file3_, 1, 1, 2, 1);
    auto* copy = button("Command7", q(texts_(403)), p);
    connect(copy, &QPushButton::clicked, this, &LogFoldersWindow::copyIn);
    l->addWidget(copy, 3, 0, 1, 2);
    connect(dir2_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &LogFoldersWindow::refreshLists);
    setSourceFolder(paths_.appPath);
    return p;
}

fs::path LogFoldersWindow::folderOf(const QTreeView* tree) {
    const auto* model = static_cast<const QFileSystemModel*>(tree->model());
    const QModelIndex i = tree->currentIndex();
    return i.isValid() ? fs::path(model->filePath(i).toStdString()) : fs::path();
}

fs::path LogFoldersWindow::targetFolder() const {
    return folderOf(dir1_);
}

void LogFoldersWindow::setTargetFolder(const fs::path& folder) {
    auto* model = static_cast<QFileSystemModel*>(dir1_->model());
    dir1_->setCurrentIndex(model->index(qpath(folder)));
}

fs::path LogFoldersWindow::sourceFolder() const {
    return folderOf(dir2_);
}

void LogFoldersWindow::setSourceFolder(const fs::path& folder) {
    auto* model = static_cast<QFileSystemModel*>(dir2_->model());
    dir2_->setCurrentIndex(model->index(qpath(folder)));
}

void LogFoldersWindow::refreshLists() {
    auto fill = [](QListWidget* list, const std::vector<std::string>& names) {
        if (!list)
            return;
        list->clear();
        for (const std::string& n : names)
            list->addItem(QString::fromStdString(n));
    };
    fill(file1_, logfolders::listLogFiles(paths_.logsPath()));
    fill(file2_, logfolders::listLogFiles(paths_.logsPath(), openLog_.filename().string()));
    if (dir2_)
        fill(file3_, logfolders::listLogFiles(sourceFolder()));
}

std::vector<fs::path> LogFoldersWindow::selected(const QListWidget* list,
                                                 const fs::path& folder) const {
    std::vector<fs::path> out;
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->isSelected())
            out.push_back(folder / list->item(i)->text().toStdString());
    return out;
}

void LogFoldersWindow::copyOut() {
    copy(selected(file1_, paths_.logsPath()), targetFolder(), false);
}

void LogFoldersWindow::copyIn() {
    copy(selected(file3_, sourceFolder()), paths_.logsPath(), true);
}

void LogFoldersWindow::copy(std::vector<std::filesystem::path> files,
                            const std::filesystem::path& target, bool in) {
    logfolders::CopyRequest req;
    req.files = std::move(files);
    req.target = target;
    req.logsFolder = paths_.logsPath();
    req.copyIn = in;
    req.openLog = openLog_;
    logfolders::copyLogs(req, dialogs_, texts_, [this](const std::string& s) {
        progress_->setText(QString::fromStdString(s));
        progress_->repaint();
    });
    progress_->clear();
    refreshLists();
}

void LogFoldersWindow::deleteLogs() {
    logfolders::deleteLogs(selected(file2_, paths_.logsPath()), openLog_, dialogs_, texts_);
    refreshLists();
}

void LogFoldersWindow::newFolder() {
    const auto name = platform::QtDialogs::input(this, texts_(408), texts_(409), "");
    if (!name)
        return;
    const auto made = logfolders::makeFolder(targetFolder(), *name);
    if (!made) {
        const Failure& f = made.failure();
        dialogs_.inform(texts_(f.text) + (f.detail.empty() ? "" : "\n" + f.detail),
                        f.text == 411 ? Icon::Information : Icon::Critical);
        return;
    }
    setTargetFolder(*made);
}

} // namespace orv::ui
