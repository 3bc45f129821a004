#include "ui/main_window.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/util/ports.h"
#include "ui/band_bar.h"
#include "ui/captions.h"
#include "ui/correction_line.h"
#include "ui/help_windows.h"
#include "ui/log_grid_model.h"
#include "ui/log_panels.h"
#include "ui/main_menus.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

// Labels and frames this layout adds to the named ones; they take their
// captions from the table in the same pass.
constexpr CaptionRow kLayoutCaptions[] = {
    {"LabelDate", 159},        {"LabelTxMode", 160},       {"LabelRxMode", 161},
    {"LabelProp", 176},        {"LabelOperator", 209},     {"LabelOwnCall", 171},
    {"LabelOwnLocator", 172},  {"LabelRate", 274},         {"Frame1", 201},
    {"Frame3", 203},           {"Command4", 281},          {"EditLabelCall", 151},
    {"EditLabelRst", 152},     {"EditLabelNr", 153},       {"EditLabelRstNr", 154},
    {"EditLabelLocator", 155}, {"EditLabelQrb", 156},      {"EditLabelTime", 150},
    {"EditLabelQsl", 157},     {"EditLabelOperator", 209}, {"Picture10", 503},
    {"LabelMaxBake", 512},
};

} // namespace

MainWindow::MainWindow(Texts& texts, Clock& clock, Beeper& beeper, QWidget* parent)
    : QMainWindow(parent), texts_(texts), clock_(clock), beeper_(beeper) {
    setObjectName("Form1");
    setWindowTitle("OrvantaContest");
    gridModel_ = new LogGridModel(this);
    menus_ = new MainMenus(*this, texts_);
    buildCentral();
    connectParts();

    setFieldColours(colours_);
    setTimeEditable(false);
    Beschriften();
    Grid1Set();
    Grid2Set();
    selectBand(1);
    tickClock();
    resize(1480, 900);
}

MainWindow::~MainWindow() = default;

void MainWindow::buildCentral() {
    auto* central = new QWidget(this);
    central->setObjectName("Form1Central");
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(6);
    bandBar_ = new BandBar(central);
    layout->addWidget(bandBar_);
    entry_ = new EntryLine(clock_, beeper_, central);
    layout->addWidget(entry_);
    correction_ = new CorrectionLine(beeper_, central);
    layout->addWidget(correction_);

    status_ = makeLabel("Label13", central);
    QFont sf = status_->font();
    sf.setBold(true);
    status_->setFont(sf);
    status_->setStyleSheet("color: #b00000;");
    status_->setMinimumHeight(status_->fontMetrics().height() + 4);
    layout->addWidget(status_);

    auto* middle = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(buildGrid(central), 1);
    panels_ = new LogPanels(central);
    left->addWidget(panels_);
    middle->addLayout(left, 1);
    side_ = new SidePanel(central);
    middle->addWidget(side_);
    layout->addLayout(middle, 1);
    setCentralWidget(central);

    // Shown on top while a band loads; the text is the program's own.
    auto* loading = new QLabel(q(texts_(503)), central);
    loading->setObjectName("Picture10");
    loading->setAlignment(Qt::AlignCenter);
    loading->setFrameShape(QFrame::Box);
    loading->setAutoFillBackground(true);
    loading->setStyleSheet("#Picture10 { background: #ffffe0; font-weight: bold; }");
    loading->resize(loading->fontMetrics().horizontalAdvance(loading->text()) * 3,
                    loading->fontMetrics().height() * 3);
    loading->hide();
    loadingPanel_ = loading;
}

QTableView* MainWindow::buildGrid(QWidget* parent) {
    grid_ = new QTableView(parent);
    grid_->setObjectName("MSFlexGrid1");
    grid_->setModel(gridModel_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setAlternatingRowColors(true);
    grid_->verticalHeader()->setVisible(false);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    grid_->horizontalHeader()->setStretchLastSection(true);
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid_, &QWidget::customContextMenuRequested, this, &MainWindow::gridContextMenu);
    connect(grid_, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& i) { gridDoubleClicked(i.row()); });
    grid_->installEventFilter(this);
    // The grid follows the newest QSO, as the operator expects at the bottom.
    connect(gridModel_, &QAbstractItemModel::rowsInserted, grid_,
            [this] { grid_->scrollToBottom(); });
    connect(gridModel_, &QAbstractItemModel::modelReset, grid_,
            [this] { grid_->scrollToBottom(); });
    return grid_;
}

void MainWindow::connectParts() {
    // The window sees every key of the fields first: its own keys act in
    // any field before the field's rules do.
    for (QWidget* f : entry_->fields() + correction_->fields()) {
        f->installEventFilter(this);
        if (auto* combo = qobject_cast<QComboBox*>(f); combo && combo->lineEdit())
            combo->lineEdit()->installEventFilter(this);
    }

    connect(menus_, &MainMenus::menuOpening, this, &MainWindow::closeEditForMenu);
    connect(menus_, &MainMenus::loadLogRequested, this, &MainWindow::loadLogRequested);
    connect(menus_, &MainMenus::logLoeschenRequested, this, &MainWindow::logLoeschenRequested);
    connect(menus_, &MainMenus::languageChosen, this, &MainWindow::languageChosen);
    connect(menus_, &MainMenus::odxRequested, this, &MainWindow::odxRequested);
    connect(menus_, &MainMenus::squaresRequested, this, [this] {
        if (onSquareWindow)
            onSquareWindow();
    });
    connect(menus_, &MainMenus::keyHelpRequested, this, &MainWindow::showKeyHelp);
    connect(menus_, &MainMenus::aboutRequested, this, &MainWindow::showAbout);
    connect(menus_, &MainMenus::timeEditToggled, this, [this](bool on) {
        setTimeEditable(on);
        emit timeEditToggled(on);
    });
    connect(menus_, &MainMenus::timeDateEditToggled, this, [this](bool on) {
        setDatePanelVisible(on);
        setTimeEditable(on);
        emit timeEditToggled(on);
    });
    connect(menus_, &MainMenus::gridEditRequested, this, [this] {
        if (gridMenuRow_ < 0)
            return;
        emit editRequested(gridMenuRow_);
        if (editLineOpen())
            focusField(correction_->call(), true);
    });
    connect(menus_, &MainMenus::gridMarkDeletedRequested, this, [this] {
        if (gridMenuRow_ >= 0)
            emit markDeletedRequested(gridMenuRow_);
    });
    connect(menus_, &MainMenus::gridRestoreRequested, this, [this] {
        if (gridMenuRow_ >= 0)
            emit restoreRequested(gridMenuRow_);
    });

    connect(bandBar_, &BandBar::buttonPressed, this,
            [this] { entry_->call()->setFocus(Qt::OtherFocusReason); });
    connect(bandBar_, &BandBar::bandChanged, this, &MainWindow::bandBoxChanged);

    connect(entry_, &EntryLine::commitRequested, this, [this] {
        if (onCommit)
            onCommit();
    });
    connect(entry_, &EntryLine::typing, status_, &QLabel::clear);
    connect(entry_, &EntryLine::callLeft, this, &MainWindow::callLeft);
    connect(entry_, &EntryLine::locatorEdited, this, &MainWindow::locatorEdited);
    connect(entry_, &EntryLine::callEdited, this, [this] {
        panels_->hideDuplicate();
        panels_->hideWorkedElsewhere();
    });
    // Each change of the propagation is remembered for the band.
    connect(entry_->propagation(), &QComboBox::currentTextChanged, this, [this](const QString& t) {
        const int band = currentBand();
        if (band >= 0 && band < kBandCount)
            bandProp_[static_cast<std::size_t>(band)] = t.trimmed();
    });
    connect(correction_, &CorrectionLine::commitRequested, this, [this] {
        if (onEditCommit)
            onEditCommit();
    });
    connect(correction_, &CorrectionLine::locatorEdited, this, &MainWindow::editLocatorEdited);

    connect(panels_, &LogPanels::resolveDuplicate, this, [this] {
        if (onResolveDuplicate)
            onResolveDuplicate();
    });
    connect(side_, &SidePanel::odxClicked, this, &MainWindow::odxRequested);
    connect(side_, &SidePanel::rateClicked, this, &MainWindow::rateSettingsRequested);
    connect(side_, &SidePanel::squaresClicked, this, [this] {
        if (onSquareWindow)
            onSquareWindow();
    });
}

void MainWindow::bandBoxChanged(int index) {
    if (editLineOpen())
        closeEditLine(false);
    // The duplicate and worked-before panels tell of the band they were
    // raised on; F11 must never act on another.
    panels_->hideDuplicate();
    panels_->hideWorkedElsewhere();
    // The band's propagation is read before the load changes anything.
    const QString prop = bandProp_[static_cast<std::size_t>(index)];
    emit bandChanged(index);
    if (!prop.isEmpty())
        entry_->propagation()->setEditText(prop);
}

void MainWindow::Beschriften() {
    applyCaptions(*this, mainWindowCaptions(), texts_);
    applyCaptions(*this, kLayoutCaptions, texts_);
    // The key help is written once; an open one is written anew.
    if (keyHelp_) {
        const bool shown = keyHelp_->isVisible();
        delete keyHelp_;
        keyHelp_ = nullptr;
        if (shown)
            showKeyHelp();
    }
}

void MainWindow::Grid1Set() {
    gridModel_->Grid1Set(texts_);
    // The old widths, widened where this program's date form or a large
    // desktop font would not fit into them.
    const QFontMetrics fm(grid_->font());
    for (int c = 0; c < LogGridModel::kColumns; ++c) {
        int px = twipsToPixels(grid_, LogGridModel::columnTwips(c));
        if (c == LogGridModel::Date)
            px = std::max(px, fm.horizontalAdvance("0000-00-00") + 14);
        else if (c == LogGridModel::Call)
            px = std::max(px, fm.horizontalAdvance("WWWWWWWWWW") + 14);
        grid_->setColumnWidth(c, px);
    }
    // The deleted flag is read back by the program, never shown.
    grid_->setColumnHidden(LogGridModel::Deleted, true);
}

void MainWindow::Grid2Set() {
    panels_->Grid2Set(texts_);
}

void MainWindow::setLanguages(const QStringList& files, const QString& current) {
    menus_->setLanguages(files, current);
}

void MainWindow::setOperators(const QStringList& calls, const QString& current) {
    QComboBox* box = entry_->operatorBox();
    box->clear();
    box->addItems(calls);
    if (auto* edit = findChild<QComboBox*>("Combo9")) {
        edit->clear();
        edit->addItems(calls);
    }
    const int at = current.isEmpty() ? -1 : box->findText(current);
    if (at >= 0)
        box->setCurrentIndex(at);
    else if (box->count() > 0)
        box->setCurrentIndex(0);
    else
        box->setEditText(current);
}

void MainWindow::setModes(const QStringList& modes) {
    for (const char* name : {"Combo3", "Combo2", "Combo4", "Combo5"}) {
        auto* c = findChild<QComboBox*>(name);
        c->clear();
        c->addItems(modes);
    }
}

void MainWindow::setCurrentMode(const QString& mode) {
    entry_->setCurrentMode(mode);
}

void MainWindow::setPropagations(const QStringList& entries, const QString& current) {
    for (const char* name : {"Combo6", "Combo7"}) {
        auto* c = findChild<QComboBox*>(name);
        c->clear();
        c->addItems(entries);
        c->addItem(QString());
    }
    entry_->propagation()->setEditText(current);
}

void MainWindow::setFieldColours(const FieldColours& colours) {
    colours_ = colours;
    entry_->setFieldColours(colours);
    correction_->setColours(colours);
    bandBar_->setQsoColour(colours.bereitsQso);
}

void MainWindow::setTimeEditable(bool editable) {
    entry_->setTimeEditable(editable);
    menus_->setTimeEditChecked(editable);
}

bool MainWindow::timeEditable() const {
    return entry_->timeEditable();
}

void MainWindow::setModeSwitch(bool on, const QString& mode2St, const QString& mode3St) {
    entry_->setModeSwitch(on, mode2St, mode3St);
}

void MainWindow::setOwnStation(const QString& call, const QString& locator) {
    bandBar_->setOwnStation(call, locator);
}

void MainWindow::setLast(const QString& call, const QString& locator) {
    lastCall_ = call;
    lastLocator_ = locator;
}

void MainWindow::selectBand(int index) {
    bandBar_->selectBand(index);
}

int MainWindow::currentBand() const {
    return bandBar_->currentBand();
}

void MainWindow::setBandHasQsos(int index, bool has) {
    bandBar_->setBandHasQsos(index, has);
}

bool MainWindow::bandHasQsos(int index) const {
    return bandBar_->bandHasQsos(index);
}

void MainWindow::setBandFigures(const BandFigures& f) {
    side_->setBandFigures(f);
}

void MainWindow::setRate(const std::optional<RateReading>& reading) {
    side_->setRate(reading);
}

void MainWindow::setNextSerial(const QString& serial) {
    entry_->setNextSerial(serial);
}

void MainWindow::showStatus(const QString& text) {
    status_->setText(text);
}

EntryRow MainWindow::entryRow() const {
    EntryRow r = entry_->entryRow();
    if (rigFrequency)
        r.freqHz = rigFrequency();
    return r;
}

void MainWindow::setEntryRow(const EntryRow& row) {
    entry_->setEntryRow(row);
}

void MainWindow::focusNamed(const std::string& control) {
    auto* target = findChild<QWidget*>(q(control));
    if (!target || !target->isVisible())
        target = entry_->call();
    focusField(target, true);
}

void MainWindow::showDuplicate(const DuplicatePanel& panel) {
    panels_->showDuplicate(panel);
}

void MainWindow::hideDuplicate() {
    panels_->hideDuplicate();
}

void MainWindow::showWorkedElsewhere(const std::vector<WorkedOnBand>& rows) {
    panels_->showWorkedElsewhere(rows);
}

void MainWindow::setPreview(const QString& km, const QString& bearing) {
    entry_->setPreview(km, bearing);
}

void MainWindow::readyForNext() {
    entry_->startClock();
    status_->clear();
    focusField(entry_->call(), false);
}

QString MainWindow::bandProp(int band) const {
    return band >= 0 && band < kBandCount ? bandProp_[static_cast<std::size_t>(band)] : QString();
}

void MainWindow::setMaxBake(int n) {
    side_->setMaxBake(n);
}

int MainWindow::maxBake() const {
    return side_->maxBake();
}

void MainWindow::setLookupLines(const QStringList& lines) {
    side_->setLookupLines(lines);
}

void MainWindow::showKeyHelp() {
    if (!keyHelp_)
        keyHelp_ = makeKeyHelp(this, texts_);
    keyHelp_->show();
    keyHelp_->raise();
}

void MainWindow::showAbout() {
    auto* d = findChild<QDialog*>("Form10");
    if (!d)
        d = makeAbout(this, texts_);
    d->open();
}

void MainWindow::setDatePanelVisible(bool on) {
    entry_->setDatePanelVisible(on);
    menus_->setTimeDateEditChecked(on);
}

void MainWindow::clearCallField() {
    entry_->call()->clear();
}

void MainWindow::clearLocatorField() {
    entry_->locator()->clear();
    setPreview({}, {});
}

void MainWindow::clearEntryLine(bool reportFiftyNine) {
    status_->clear();
    panels_->hideDuplicate();
    panels_->hideWorkedElsewhere();
    entry_->clear(reportFiftyNine);
}

void MainWindow::restartClock() {
    entry_->startClock();
}

void MainWindow::stopClock() {
    entry_->stopClock();
}

void MainWindow::tickClock() {
    entry_->tickClock();
}

bool MainWindow::clockRunning() const {
    return entry_->clockRunning();
}

bool MainWindow::editLineOpen() const {
    return correction_->isVisible();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    entry_->stopClock();
    emit closing();
    QMainWindow::closeEvent(event);
}

} // namespace orv::ui
