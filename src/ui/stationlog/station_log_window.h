#pragma once

#include <QMainWindow>
#include <cstdint>
#include <memory>
#include <optional>

#include "core/app/app_paths.h"

class QPushButton;
class QTableView;
class QTimer;
class QVBoxLayout;

namespace orv {
class Clock;
class Dialogs;
class Settings;
class StationLog;
class Texts;
struct StrSetting;
} // namespace orv

namespace orv::ui {

class RangeFrame;
class StationEntryFrame;
class StationGridModel;

// What the station log shares with the contest window: the data folder, the
// settings file, the language table, and the ways to ask the user.
struct StationLogContext {
    AppPaths paths;
    Settings& settings;
    const Texts& texts;
    Dialogs& dialogs;
    Clock& clock;
};

// `QJForm1`, OrvantaLog: the station log's own window with its menus, the
// entry frame over (or under) the grid `DBGrid1` of the whole log, and its
// clock `Timer1`. It writes nothing itself: the store does.
class StationLogWindow final : public QMainWindow {
    Q_OBJECT
public:
    explicit StationLogWindow(StationLogContext ctx, QWidget* parent = nullptr);
    ~StationLogWindow() override;

    // Opens the log named by `LogFile`, or asks IText(377)/IText(378)
    // whether to make a new one or choose one.
    void start();
    // The open log, for tests and the main window.
    StationLog* log() const { return log_.get(); }

    // The menu entries.
    void newLog();     // MnNewLog
    void openLog();    // MnOpenLog
    void showExport(); // MnAdifExport
    void deleteOne();  // MnDbLoesch
    void showDelete(); // MnDbGLoesch
    void options();    // MnOptionen
    // The entry's save, Command1, Command3 and Command4.
    void save();
    void moveEntryFrame();
    void deleteRange();
    void exportRange();

protected:
    void closeEvent(QCloseEvent* e) override;
    void changeEvent(QEvent* e) override;

private:
    void setTitle();
    void buildMenus();
    void placeFrames();
    void useLog(std::unique_ptr<StationLog> log);
    void refill();
    void takeFromGrid(const QModelIndex& index);
    void rememberBox(const StrSetting& key, const QString& value);
    void tick();
    void refuse(int text, const std::string& field);
    void error(const std::exception& e);

    StationLogContext ctx_;
    std::unique_ptr<StationLog> log_;
    StationEntryFrame* entry_;
    QTableView* grid_;
    StationGridModel* model_;
    RangeFrame* deleteFrame_;
    RangeFrame* exportFrame_;
    QPushButton* move_;
    QTimer* clock_;
    QVBoxLayout* column_;
    bool entryBelow_ = false;
    // The record taken from the grid to be changed, if any.
    std::optional<std::int64_t> editing_;
};

} // namespace orv::ui
