#include "ui/stationlog/station_log_window.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/stationlog/adif_export.h"
#include "core/stationlog/entry_check.h"
#include "core/stationlog/station_log.h"
#include "core/stationlog/station_settings.h"
#include "core/submission/export_file.h"
#include "core/util/ports.h"
#include "platform/qt_dialogs.h"
#include "ui/captions.h"
#include "ui/stationlog/qj_config_dialog.h"
#include "ui/stationlog/station_entry_frame.h"
#include "ui/stationlog/station_grid_model.h"
#include "ui/stationlog/station_range_frames.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

namespace fs = std::filesystem;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The menu entries: object name and row of the language table.
struct MenuRow {
    const char* control;
    int textRow;
    void (StationLogWindow::*action)();
};
constexpr MenuRow kMenu[] = {
    {"MnNewLog", 12, &StationLogWindow::newLog},
    {"MnOpenLog", 261, &StationLogWindow::openLog},
    {"MnAdifExport", 419, &StationLogWindow::showExport},
    {"MnDbLoesch", 214, &StationLogWindow::deleteOne},
    {"MnDbGLoesch", 386, &StationLogWindow::showDelete},
    {"MnOptionen", 383, &StationLogWindow::options},
};
constexpr int kMoveCaption = 513;

void removeLogFile(const fs::path& p) {
    for (const char* side : {"", "-wal", "-shm", "-journal"}) {
        fs::path f = p;
        f += side;
        fs::remove(f);
    }
}

} // namespace

StationLogWindow::StationLogWindow(StationLogContext ctx, QWidget* parent)
    : QMainWindow(parent), ctx_(std::move(ctx)) {
    setObjectName("QJForm1");
    setTitle();
    auto* central = new QWidget(this);
    column_ = new QVBoxLayout(central);
    entry_ = new StationEntryFrame(ctx_.texts, central);
    move_ = captioned<QPushButton>(kMoveCaption, ctx_.texts, central);
    move_->setObjectName("Command1");
    model_ = new StationGridModel(ctx_.texts, this);
    grid_ = new QTableView(central);
    grid_->setObjectName("DBGrid1");
    grid_->setModel(model_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->verticalHeader()->hide();
    grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    deleteFrame_ = new RangeFrame(RangeFrame::Kind::Delete, ctx_.texts, central);
    exportFrame_ = new RangeFrame(RangeFrame::Kind::Export, ctx_.texts, central);
    setCentralWidget(central);
    buildMenus();

    const StationWindowState state = readStationWindowState(ctx_.settings);
    entryBelow_ = state.entryBelow;
    placeFrames();
    if (state.width > 0 && state.height > 0)
        setGeometry(state.left, state.top, state.width, state.height);
    refill();
    entry_->setQslAndPower(state.qsl, state.power);

    clock_ = new QTimer(this);
    clock_->setObjectName("Timer1");
    clock_->setInterval(1000);
    connect(clock_, &QTimer::timeout, this, &StationLogWindow::tick);
    connect(entry_, &StationEntryFrame::clockEdited, clock_, &QTimer::stop);
    connect(entry_, &StationEntryFrame::saveRequested, this, &StationLogWindow::save);
    connect(move_, &QPushButton::clicked, this, &StationLogWindow::moveEntryFrame);
    connect(grid_, &QTableView::clicked, this, &StationLogWindow::takeFromGrid);
    connect(deleteFrame_, &RangeFrame::started, this, &StationLogWindow::deleteRange);
    connect(exportFrame_, &RangeFrame::started, this, &StationLogWindow::exportRange);
    tick();
    clock_->start();
}

StationLogWindow::~StationLogWindow() = default;

void StationLogWindow::buildMenus() {
    QMenu* menu = menuBar()->addMenu(QString());
    menu->setObjectName("MnQJLog");
    captionFromRow(*menu, 370, ctx_.texts);
    for (const auto& m : kMenu) {
        QAction* a = menu->addAction(QString());
        a->setObjectName(m.control);
        captionFromRow(*a, m.textRow, ctx_.texts);
        connect(a, &QAction::triggered, this, m.action);
    }
}

void StationLogWindow::placeFrames() {
    for (QWidget* w : {static_cast<QWidget*>(entry_), static_cast<QWidget*>(move_),
                       static_cast<QWidget*>(deleteFrame_), static_cast<QWidget*>(exportFrame_),
                       static_cast<QWidget*>(grid_)})
        column_->removeWidget(w);
    if (!entryBelow_)
        column_->addWidget(entry_);
    column_->addWidget(move_);
    column_->addWidget(deleteFrame_);
    column_->addWidget(exportFrame_);
    column_->addWidget(grid_, 1);
    if (entryBelow_)
        column_->addWidget(entry_);
}

void StationLogWindow::start() {
    const std::string last = ctx_.settings.get(keys::QJLogFile);
    if (!last.empty()) {
        auto opened = StationLog::open(ctx_.paths.stationLogPath() / last);
        if (opened) {
            useLog(std::make_unique<StationLog>(std::move(opened).value()));
            return;
        }
    }
    const Answer a = ctx_.dialogs.ask(ctx_.texts(377) + "\n" + ctx_.texts(378), Buttons::YesNo,
                                      Icon::Question, Answer::Yes);
    if (a == Answer::Yes)
        newLog();
    else
        openLog();
}

void StationLogWindow::setTitle() {
    std::string title = ctx_.texts(370);
    if (log_)
        title += " - [" + log_->path().filename().string() + "]";
    setWindowTitle(q(title));
}

void StationLogWindow::changeEvent(QEvent* e) {
    if (e->type() == QEvent::LanguageChange) {
        setTitle();
        emit model_->headerDataChanged(Qt::Horizontal, 0, model_->columnCount() - 1);
    }
    QMainWindow::changeEvent(e);
}

void StationLogWindow::useLog(std::unique_ptr<StationLog> log) {
    log_ = std::move(log);
    editing_.reset();
    model_->load(log_.get());
    const std::string file = log_->path().filename().string();
    setTitle();
    ctx_.settings.set(keys::QJLogFile, file);
    grid_->scrollToBottom();
}

void StationLogWindow::newLog() {
    const auto name =
        platform::QtDialogs::input(this, ctx_.texts(5), ctx_.texts(370),
                                   proposedStationLogName(ctx_.texts(370), ctx_.clock.now()));
    if (!name)
        return;
    const auto file = stationLogFile(ctx_.paths.stationLogPath(), *name);
    if (!file) {
        ctx_.dialogs.inform(ctx_.texts(file.failure().text), Icon::Critical);
        return;
    }
    try {
        if (fs::exists(file.value())) {
            if (ctx_.dialogs.ask(ctx_.texts(8), Buttons::YesNo, Icon::Question, Answer::No) !=
                Answer::Yes)
                return;
            if (log_ && log_->path() == file.value()) {
                model_->load(nullptr);
                log_.reset();
            }
            removeLogFile(file.value());
        }
        fs::create_directories(ctx_.paths.stationLogPath());
        useLog(std::make_unique<StationLog>(StationLog::create(file.value())));
    } catch (const std::exception& e) {
        error(e);
    }
}

void StationLogWindow::openLog() {
    const fs::path chosen = SubmissionHooks::openFile(this, q(ctx_.texts(370)), "*.sqlite",
                                                      ctx_.paths.stationLogPath());
    if (chosen.empty())
        return;
    auto opened = StationLog::open(chosen);
    if (!opened) {
        ctx_.dialogs.inform(ctx_.texts(opened.failure().text) + "\n" + chosen.string(),
                            Icon::Critical);
        return;
    }
    useLog(std::make_unique<StationLog>(std::move(opened).value()));
}

void StationLogWindow::refuse(int text, const std::string& field) {
    ctx_.dialogs.inform(ctx_.texts(text), Icon::Critical);
    if (QWidget* w = entry_->box(field))
        w->setFocus();
}

void StationLogWindow::error(const std::exception& e) {
    ctx_.dialogs.inform(ctx_.texts(10) + "\n" + e.what(), Icon::Critical);
}

void StationLogWindow::save() {
    if (!log_)
        return;
    auto checked = checkStationEntry(entry_->entry());
    if (!checked) {
        refuse(checked.failure().text, checked.failure().field);
        return;
    }
    try {
        std::int64_t nr = 0;
        bool changed = false;
        if (editing_) {
            const Answer a = ctx_.dialogs.ask(ctx_.texts(379) + "\n" + ctx_.texts(380),
                                              Buttons::YesNo, Icon::Question, Answer::Yes);
            if (a == Answer::Yes && log_->update(*editing_, checked.value())) {
                nr = *editing_;
                changed = true;
            }
        }
        if (!changed)
            nr = log_->add(checked.value());
        editing_.reset();
        if (changed) {
            model_->changed(nr);
        } else {
            StationQso stored = checked.value();
            stored.nr = nr;
            model_->appended(stored);
        }
        grid_->scrollTo(model_->index(model_->rowOf(nr), 0));
        rememberBox(keys::QJQSL, entry_->qsl());
        rememberBox(keys::QJPower, entry_->power());
    } catch (const std::exception& e) {
        error(e);
        return;
    }
    entry_->clearAfterSave();
    if (QWidget* call = entry_->box("Text3"))
        call->setFocus();
    tick();
    clock_->start();
}

void StationLogWindow::rememberBox(const StrSetting& key, const QString& value) {
    // Each write rewrites and syncs the settings file: only a change is
    // worth that on every save.
    const std::string v = value.toStdString();
    if (ctx_.settings.get(key) != v)
        ctx_.settings.set(key, v);
}

void StationLogWindow::takeFromGrid(const QModelIndex& index) {
    const auto record = model_->record(index.row());
    if (!record)
        return;
    clock_->stop();
    editing_ = record->nr;
    entry_->showEntry(entryOf(*record));
}

void StationLogWindow::tick() {
    entry_->showClock(ctx_.clock.now());
}

void StationLogWindow::moveEntryFrame() {
    entryBelow_ = !entryBelow_;
    placeFrames();
    ctx_.settings.set(keys::QJEingabePos, entryBelow_ ? 1 : 0);
}

void StationLogWindow::deleteOne() {
    const QModelIndex current = grid_->currentIndex();
    if (!log_ || !current.isValid())
        return;
    if (ctx_.dialogs.ask(ctx_.texts(385), Buttons::YesNo, Icon::Question, Answer::No) !=
        Answer::Yes)
        return;
    try {
        log_->remove(model_->nrAt(current.row()));
        editing_.reset();
        model_->load(log_.get());
    } catch (const std::exception& e) {
        error(e);
    }
}

void StationLogWindow::showDelete() {
    if (!log_)
        return;
    exportFrame_->hide();
    deleteFrame_->show();
    deleteFrame_->fromBox()->setFocus();
}

void StationLogWindow::deleteRange() {
    if (!log_)
        return;
    if (ctx_.dialogs.ask(ctx_.texts(385), Buttons::YesNo, Icon::Question, Answer::No) !=
        Answer::Yes)
        return;
    const QString from = deleteFrame_->fromBox()->text().trimmed();
    const QString to = deleteFrame_->toBox()->text().trimmed();
    bool okFrom = false, okTo = false;
    const qlonglong f = from.toLongLong(&okFrom), t = to.toLongLong(&okTo);
    if (!okFrom || !okTo) {
        ctx_.dialogs.inform(ctx_.texts(391), Icon::Critical);
        return;
    }
    try {
        const auto removed = log_->removeRange(f, t);
        if (!removed) {
            ctx_.dialogs.inform(ctx_.texts(removed.failure().text), Icon::Critical);
            return;
        }
    } catch (const std::exception& e) {
        ctx_.dialogs.inform(ctx_.texts(390) + "\n" + e.what(), Icon::Critical);
    }
    editing_.reset();
    model_->load(log_.get());
    deleteFrame_->hide();
}

void StationLogWindow::showExport() {
    if (!log_)
        return;
    deleteFrame_->hide();
    exportFrame_->propose(log_->firstNr().value_or(0), log_->lastNr().value_or(0));
    exportFrame_->show();
}

void StationLogWindow::exportRange() {
    if (!log_)
        return;
    std::optional<NrRange> range;
    if (!exportFrame_->wholeLog()) {
        auto r = checkExportRange(*log_, exportFrame_->fromBox()->text().toStdString(),
                                  exportFrame_->toBox()->text().toStdString());
        if (!r) {
            ctx_.dialogs.inform(ctx_.texts(r.failure().text), Icon::Critical);
            (r.failure().field == "Text14" ? exportFrame_->toBox() : exportFrame_->fromBox())
                ->setFocus();
            return;
        }
        range = r.value();
    }
    exportFrame_->hide();
    const fs::path chosen =
        SubmissionHooks::saveFile(this, q(ctx_.texts(182)), "*.adi", ctx_.paths.stationLogPath());
    if (chosen.empty())
        return;
    try {
        const fs::path written = exportStationAdif(*log_, chosen, range);
        ctx_.dialogs.inform(savedMessage(ctx_.texts, written), Icon::Information);
    } catch (const std::exception& e) {
        error(e);
    }
}

void StationLogWindow::options() {
    QjConfigDialog dialog(ctx_.settings, ctx_.texts, this);
    if (SubmissionHooks::runModal(dialog) == QDialog::Accepted)
        refill();
}

void StationLogWindow::refill() {
    entry_->setLists(readStationLists(ctx_.settings), ctx_.settings.callList());
}

void StationLogWindow::closeEvent(QCloseEvent* e) {
    StationWindowState s;
    const QRect g = geometry();
    s.left = g.left();
    s.top = g.top();
    s.width = g.width();
    s.height = g.height();
    s.qsl = entry_->qsl().toStdString();
    s.power = entry_->power().toStdString();
    try {
        writeStationWindowClose(ctx_.settings, s);
        writeStationList(ctx_.settings, section::QJDatMyLocList, entry_->myLocators());
    } catch (const std::exception& ex) {
        error(ex);
    }
    clock_->stop();
    e->accept();
}

} // namespace orv::ui
