#pragma once

#include <QObject>
#include <QStringList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

namespace orv {
class Texts;
}

namespace orv::ui {

// The menu bar of the main window and its context menus (`MnMSFlexGrid1`,
// `MnList1`, `MnMSFlexGrid3`). Entries whose work is done elsewhere are
// found by their object names and enabled by whoever does it.
class MainMenus : public QObject {
    Q_OBJECT
public:
    MainMenus(QMainWindow& window, const Texts& texts);

    // The language menu `MnSprache`: "<Default>" and one entry per file.
    void setLanguages(const QStringList& files, const QString& current);
    void setTimeEditChecked(bool on);
    void setTimeDateEditChecked(bool on);
    // The grid's context menu prepared for a row: a deleted row offers only
    // the restore, any other row correction and deletion.
    QMenu* gridMenu(bool deletedRow);

signals:
    // Any menu of the bar is about to open.
    void menuOpening();
    void loadLogRequested();
    void logLoeschenRequested();
    void timeEditToggled(bool editable);
    void timeDateEditToggled(bool editable);
    void languageChosen(const QString& caption);
    void odxRequested();
    void squaresRequested();
    void keyHelpRequested();
    void aboutRequested();
    void gridEditRequested();
    void gridMarkDeletedRequested();
    void gridRestoreRequested();

private:
    void buildBar(QMainWindow& window);
    void buildPopups(QMainWindow& window);

    const Texts& texts_;
    QMenu* languageMenu_ = nullptr;
    QActionGroup* languageGroup_ = nullptr;
    QAction* timeEdit_ = nullptr;
    QAction* timeDateEdit_ = nullptr;
    QMenu* gridMenu_ = nullptr;
};

} // namespace orv::ui
