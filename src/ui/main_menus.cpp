#include "ui/main_menus.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>

#include "core/i18n/texts.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

// Entries whose work is not part of the window yet stay visible but
// disabled, so the menu reads as it will.
QAction* entry(QMenu* m, const char* name, bool enabled = false, const QString& fallback = {}) {
    QAction* a = m->addAction(fallback.isEmpty() ? QString::fromLatin1(name) : fallback);
    a->setObjectName(name);
    a->setEnabled(enabled);
    return a;
}

} // namespace

MainMenus::MainMenus(QMainWindow& window, const Texts& texts) : QObject(&window), texts_(texts) {
    setObjectName("MainMenus");
    buildBar(window);
    buildPopups(window);
}

void MainMenus::buildBar(QMainWindow& window) {
    QMenuBar* bar = window.menuBar();
    auto menu = [&](QMenu* parentMenu, const char* name, const QString& fallback) {
        QMenu* m = parentMenu ? parentMenu->addMenu(fallback) : bar->addMenu(fallback);
        m->setObjectName(name);
        connect(m, &QMenu::aboutToShow, this, &MainMenus::menuOpening);
        return m;
    };

    QMenu* datei = menu(nullptr, "MnDatei", q(texts_(80)));
    connect(entry(datei, "MnLoadLog", true), &QAction::triggered, this,
            &MainMenus::loadLogRequested);
    datei->addSeparator();
    QMenu* logMenu = menu(datei, "MnLog", q(texts_(401)));
    entry(logMenu, "MnLogCopy");
    entry(logMenu, "MnLogExport");
    entry(logMenu, "MnLogImport");
    entry(logMenu, "MnLogLöschen", false, q(texts_(49)));
    datei->addSeparator();
    entry(datei, "MnARRLImport");
    entry(datei, "DXCCImp");
    entry(datei, "MnARRLImportDownL");
    datei->addSeparator();
    entry(datei, "NewQBDat");
    entry(datei, "QBDatEdit");
    entry(datei, "MnQBDatImport");
    datei->addSeparator();
    QMenu* foreign = menu(datei, "MnFremd", q(texts_(416)));
    entry(foreign, "MnLogImportFremd");
    entry(foreign, "MnImportHAMIII");
    datei->addSeparator();
    connect(entry(datei, "MnLogLoeschen", true), &QAction::triggered, this,
            &MainMenus::logLoeschenRequested);
    entry(datei, "MnGruppenAendern");

    QMenu* auswert = menu(nullptr, "MnAuswert", q(texts_(501)));
    entry(auswert, "Auswerten");
    entry(auswert, "MnDBCheck");
    entry(auswert, "MnEDIUpload");
    entry(auswert, "MnEDIEdit");

    QMenu* statistik = menu(nullptr, "MnStatistik", q(texts_(267)));
    entry(statistik, "MnStatistikKurz");

    QMenu* optionen = menu(nullptr, "MnOptionen", q(texts_(81)));
    entry(optionen, "MnOptionenA");
    entry(optionen, "MnSichern")->setCheckable(true);
    timeEdit_ = entry(optionen, "MnTimeEdit", true);
    timeEdit_->setCheckable(true);
    connect(timeEdit_, &QAction::triggered, this, &MainMenus::timeEditToggled);
    timeDateEdit_ = entry(optionen, "MnTimeDateEdit", true);
    timeDateEdit_->setCheckable(true);
    connect(timeDateEdit_, &QAction::triggered, this, &MainMenus::timeDateEditToggled);
    languageMenu_ = menu(optionen, "MnSprache", q(texts_(231)));
    languageGroup_ = new QActionGroup(this);
    setLanguages({}, "<Default>");

    QMenu* ansicht = menu(nullptr, "MnAnsicht", q(texts_(90)));
    connect(entry(ansicht, "MnODX", true), &QAction::triggered, this, &MainMenus::odxRequested);
    connect(entry(ansicht, "MnGrossF", true), &QAction::triggered, this,
            &MainMenus::squaresRequested);
    entry(ansicht, "MnCWFensterAN");
    entry(ansicht, "MnOrvantaLog");

    QMenu* hilfe = menu(nullptr, "MnHilfe", q(texts_(82)));
    connect(entry(hilfe, "MnHilfeTasten", true), &QAction::triggered, this,
            &MainMenus::keyHelpRequested);
    entry(hilfe, "MnHomepage");
    entry(hilfe, "MnLaenderlisteDownL");
    hilfe->addSeparator();
    connect(entry(hilfe, "MnHilfeInfo", true), &QAction::triggered, this,
            &MainMenus::aboutRequested);
}

void MainMenus::buildPopups(QMainWindow& window) {
    auto popup = [&](const char* name) {
        auto* m = new QMenu(&window);
        m->setObjectName(name);
        return m;
    };
    gridMenu_ = popup("MnMSFlexGrid1");
    connect(entry(gridMenu_, "MnGrid1Edit", true), &QAction::triggered, this,
            &MainMenus::gridEditRequested);
    connect(entry(gridMenu_, "MnMarkASKill", true), &QAction::triggered, this,
            &MainMenus::gridMarkDeletedRequested);
    connect(entry(gridMenu_, "MnGrid1KillRetur", true), &QAction::triggered, this,
            &MainMenus::gridRestoreRequested);
    QMenu* list1 = popup("MnList1");
    for (const char* name : {"MnCallADD", "MnLocatorADD", "MnCallLocADD", "MnEditList1"})
        entry(list1, name);
    QMenu* grid3 = popup("MnMSFlexGrid3");
    for (const char* name :
         {"MnGrid3Edit", "MnGrid3CallGO", "MnGrid3LocGO", "MnGrid3CallLocGO", "MnGrid3DBEdit"})
        entry(grid3, name);
}

void MainMenus::setLanguages(const QStringList& files, const QString& current) {
    for (QAction* a : languageGroup_->actions()) {
        languageGroup_->removeAction(a);
        languageMenu_->removeAction(a);
        a->deleteLater();
    }
    QStringList captions{"<Default>"};
    captions << files;
    for (int i = 0; i < captions.size(); ++i) {
        QAction* a = languageMenu_->addAction(captions[i]);
        a->setObjectName(QString("MnDefault%1").arg(i));
        a->setCheckable(true);
        a->setChecked(captions[i] == current);
        languageGroup_->addAction(a);
        connect(a, &QAction::triggered, this,
                [this, caption = captions[i]] { emit languageChosen(caption); });
    }
    // A stored name that is no longer there leaves "<Default>" checked.
    if (!languageGroup_->checkedAction())
        languageGroup_->actions().front()->setChecked(true);
}

void MainMenus::setTimeEditChecked(bool on) {
    timeEdit_->setChecked(on);
}

void MainMenus::setTimeDateEditChecked(bool on) {
    timeDateEdit_->setChecked(on);
}

QMenu* MainMenus::gridMenu(bool deletedRow) {
    gridMenu_->findChild<QAction*>("MnGrid1Edit")->setVisible(!deletedRow);
    gridMenu_->findChild<QAction*>("MnMarkASKill")->setVisible(!deletedRow);
    gridMenu_->findChild<QAction*>("MnGrid1KillRetur")->setVisible(deletedRow);
    return gridMenu_;
}

} // namespace orv::ui
