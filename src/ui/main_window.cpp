#include "ui/main_window.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/util/ports.h"
#include "ui/captions.h"
#include "ui/log_grid_model.h"

namespace orv::ui {
namespace {

// Labels and frames this layout adds to the named ones; they take their
// captions from the table in the same pass.
constexpr CaptionRow kLayoutCaptions[] = {
    {"LabelDate", 159},
    {"LabelTxMode", 160},
    {"LabelRxMode", 161},
    {"LabelProp", 176},
    {"LabelOperator", 209},
    {"LabelOwnCall", 171},
    {"LabelOwnLocator", 172},
    {"LabelRate", 274},
    {"Frame1", 201},
    {"Frame3", 203},
    {"EditLabelCall", 151},
    {"EditLabelRst", 152},
    {"EditLabelNr", 153},
    {"EditLabelRstNr", 154},
    {"EditLabelLocator", 155},
    {"EditLabelQrb", 156},
    {"EditLabelTime", 150},
    {"EditLabelQsl", 157},
    {"EditLabelOperator", 209},
};

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// Twips of the original layout to pixels of this screen.
int twipsToPixels(const QWidget* w, int twips) {
    return twips * w->logicalDpiX() / 1440;
}

QLineEdit* makeField(const char* name, int chars, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    const int w = e->fontMetrics().horizontalAdvance(QString(chars, QChar('W')));
    e->setMinimumWidth(w + 12);
    e->setAutoFillBackground(true);
    return e;
}

QComboBox* makeCombo(const char* name, int chars, bool editable, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(editable);
    c->setMinimumWidth(c->fontMetrics().horizontalAdvance(QString(chars, QChar('W'))) + 32);
    return c;
}

QLabel* makeLabel(const char* name, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    return l;
}

void setBackground(QWidget* w, const QColor& c) {
    QPalette p = w->palette();
    p.setColor(QPalette::Base, c);
    w->setPalette(p);
}

} // namespace

MainWindow::MainWindow(Texts& texts, Clock& clock, Beeper& beeper, QWidget* parent)
    : QMainWindow(parent), texts_(texts), clock_(clock), beeper_(beeper) {
    setObjectName("Form1");
    setWindowTitle("OrvantaContest");
    gridModel_ = new LogGridModel(this);
    buildMenus();
    buildCentral();
    wireFields();

    timer1_ = new QTimer(this);
    timer1_->setObjectName("Timer1");
    timer1_->setInterval(1000);
    connect(timer1_, &QTimer::timeout, this, &MainWindow::tickClock);
    timer1_->start();

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

void MainWindow::Beschriften() {
    applyCaptions(*this, mainWindowCaptions(), texts_);
    applyCaptions(*this, kLayoutCaptions, texts_);
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
    const int heads[] = {173, 151, 155, 152, 153, -1, 156, 150};
    const int twips[] = {700, 1300, 1300, 580, 580, 900, 700, 700};
    QStringList labels;
    for (int h : heads)
        labels << (h < 0 ? q(texts_(152)) + q(texts_(153)) : q(texts_(h)));
    workedGrid_->setColumnCount(8);
    workedGrid_->setHorizontalHeaderLabels(labels);
    for (int c = 0; c < 8; ++c)
        workedGrid_->setColumnWidth(c, twipsToPixels(workedGrid_, twips[c]));
}

void MainWindow::buildMenus() {
    QMenuBar* bar = menuBar();
    auto menu = [&](QMenu* parentMenu, const char* name, const QString& fallback) {
        QMenu* m = parentMenu ? parentMenu->addMenu(fallback) : bar->addMenu(fallback);
        m->setObjectName(name);
        // Pulling down a menu closes the comparison frame, as its button
        // does, and drops a correction in hand: the menu's work may change
        // the row under it.
        connect(m, &QMenu::aboutToShow, this, &MainWindow::closeEditForMenu);
        return m;
    };
    // Entries whose work is not part of this window yet stay visible but
    // disabled, so the menu reads as it will.
    auto entry = [&](QMenu* m, const char* name, bool enabled = false,
                     const QString& fallback = {}) {
        QAction* a = m->addAction(fallback.isEmpty() ? QString::fromLatin1(name) : fallback);
        a->setObjectName(name);
        a->setEnabled(enabled);
        return a;
    };

    QMenu* datei = menu(nullptr, "MnDatei", "&Datei");
    QAction* loadLog = entry(datei, "MnLoadLog", true);
    connect(loadLog, &QAction::triggered, this, &MainWindow::loadLogRequested);
    datei->addSeparator();
    QMenu* logMenu = menu(datei, "MnLog", q(texts_(401)));
    entry(logMenu, "MnLogCopy");
    entry(logMenu, "MnLogExport");
    entry(logMenu, "MnLogImport");
    entry(logMenu, "MnLogLöschen", false, "&Löschen");
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
            &MainWindow::logLoeschenRequested);
    entry(datei, "MnGruppenAendern");

    QMenu* auswert = menu(nullptr, "MnAuswert", "Aus&wertung");
    entry(auswert, "Auswerten");
    entry(auswert, "MnDBCheck");
    entry(auswert, "MnEDIUpload");
    entry(auswert, "MnEDIEdit");

    QMenu* statistik = menu(nullptr, "MnStatistik", "Statisti&k");
    entry(statistik, "MnStatistikKurz");

    QMenu* optionen = menu(nullptr, "MnOptionen", "&Optionen");
    entry(optionen, "MnOptionenA");
    QAction* sichern = entry(optionen, "MnSichern");
    sichern->setCheckable(true);
    timeEditAction_ = entry(optionen, "MnTimeEdit", true);
    timeEditAction_->setCheckable(true);
    connect(timeEditAction_, &QAction::triggered, this, [this](bool on) {
        setTimeEditable(on);
        emit timeEditToggled(on);
    });
    timeDateEditAction_ = entry(optionen, "MnTimeDateEdit", true);
    timeDateEditAction_->setCheckable(true);
    connect(timeDateEditAction_, &QAction::triggered, this, [this](bool on) {
        setDatePanelVisible(on);
        setTimeEditable(on);
        emit timeEditToggled(on);
    });
    languageMenu_ = menu(optionen, "MnSprache", "Sprache");
    languageGroup_ = new QActionGroup(this);
    setLanguages({}, "<Default>");

    QMenu* ansicht = menu(nullptr, "MnAnsicht", "&Ansicht");
    connect(entry(ansicht, "MnODX", true), &QAction::triggered, this, &MainWindow::odxRequested);
    QAction* squares = entry(ansicht, "MnGrossF", true);
    connect(squares, &QAction::triggered, this, [this] {
        if (onSquareWindow)
            onSquareWindow();
    });
    entry(ansicht, "MnCWFensterAN");
    entry(ansicht, "MnOrvantaLog");

    QMenu* hilfe = menu(nullptr, "MnHilfe", "&Hilfe");
    connect(entry(hilfe, "MnHilfeTasten", true), &QAction::triggered, this,
            &MainWindow::showKeyHelp);
    entry(hilfe, "MnHomepage");
    entry(hilfe, "MnLaenderlisteDownL");
    hilfe->addSeparator();
    QAction* info = entry(hilfe, "MnHilfeInfo", true);
    connect(info, &QAction::triggered, this, &MainWindow::showAbout);

    // Context menus of the grids and of the lookup list.
    auto popup = [&](const char* name) {
        auto* m = new QMenu(this);
        m->setObjectName(name);
        return m;
    };
    gridMenu_ = popup("MnMSFlexGrid1");
    connect(entry(gridMenu_, "MnGrid1Edit", true), &QAction::triggered, this, [this] {
        if (gridMenuRow_ < 0)
            return;
        emit editRequested(gridMenuRow_);
        if (editLineOpen())
            focusField(correctionLine_->findChild<QLineEdit*>("Text33"), true);
    });
    connect(entry(gridMenu_, "MnMarkASKill", true), &QAction::triggered, this, [this] {
        if (gridMenuRow_ >= 0)
            emit markDeletedRequested(gridMenuRow_);
    });
    connect(entry(gridMenu_, "MnGrid1KillRetur", true), &QAction::triggered, this, [this] {
        if (gridMenuRow_ >= 0)
            emit restoreRequested(gridMenuRow_);
    });
    QMenu* list1 = popup("MnList1");
    entry(list1, "MnCallADD");
    entry(list1, "MnLocatorADD");
    entry(list1, "MnCallLocADD");
    entry(list1, "MnEditList1");
    QMenu* grid3 = popup("MnMSFlexGrid3");
    entry(grid3, "MnGrid3Edit");
    entry(grid3, "MnGrid3CallGO");
    entry(grid3, "MnGrid3LocGO");
    entry(grid3, "MnGrid3CallLocGO");
    entry(grid3, "MnGrid3DBEdit");
}

void MainWindow::setLanguages(const QStringList& files, const QString& current) {
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

void MainWindow::buildCentral() {
    auto* central = new QWidget(this);
    central->setObjectName("Form1Central");
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(6);
    layout->addWidget(buildBandBar());
    layout->addWidget(buildEntryRow());
    layout->addWidget(buildCorrectionLine());

    status_ = makeLabel("Label13", central);
    QFont sf = status_->font();
    sf.setBold(true);
    status_->setFont(sf);
    status_->setStyleSheet("color: #b00000;");
    status_->setMinimumHeight(status_->fontMetrics().height() + 4);
    layout->addWidget(status_);

    auto* middle = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    grid_ = new QTableView(central);
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
    left->addWidget(grid_, 1);
    left->addWidget(buildPanels());
    middle->addLayout(left, 1);
    middle->addWidget(buildSidePanel());
    layout->addLayout(middle, 1);
    setCentralWidget(central);

    // Shown on top while a band loads; the text is the program's own.
    auto* loading = new QLabel("Loading...", central);
    loading->setObjectName("Picture10");
    loading->setAlignment(Qt::AlignCenter);
    loading->setFrameShape(QFrame::Box);
    loading->setAutoFillBackground(true);
    loading->setStyleSheet("#Picture10 { background: #ffffe0; font-weight: bold; }");
    loading->resize(loading->fontMetrics().horizontalAdvance("Loading...") * 3,
                    loading->fontMetrics().height() * 3);
    loading->hide();
    loadingPanel_ = loading;
}

QWidget* MainWindow::buildBandBar() {
    auto* bar = new QFrame(this);
    bar->setObjectName("Picture1");
    auto* h = new QHBoxLayout(bar);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);
    for (int i = 0; i < kBandCount; ++i) {
        auto* b = new QPushButton(q(std::string(kBands[static_cast<std::size_t>(i)].caption)), bar);
        b->setObjectName(QString("BandSel%1").arg(i));
        b->setFocusPolicy(Qt::NoFocus);
        b->setAutoFillBackground(true);
        b->setMinimumWidth(b->fontMetrics().horizontalAdvance("70 cmW") + 12);
        connect(b, &QPushButton::clicked, this, [this, i] {
            selectBand(i);
            call_->setFocus(Qt::OtherFocusReason);
        });
        bandButtons_[static_cast<std::size_t>(i)] = b;
        h->addWidget(b);
    }
    bandBox_ = new QComboBox(bar);
    bandBox_->setObjectName("Combo1");
    for (const Band& b : kBands)
        bandBox_->addItem(q(std::string(b.boxText)));
    bandBox_->setFocusPolicy(Qt::NoFocus);
    connect(bandBox_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (editLineOpen())
            closeEditLine(false);
        paintBandButtons();
        if (i < 0)
            return;
        // The band's propagation is read before the load changes anything.
        const QString prop = bandProp_[static_cast<std::size_t>(i)];
        emit bandChanged(i);
        if (!prop.isEmpty())
            propagation_->setEditText(prop);
    });
    h->addWidget(bandBox_);
    h->addSpacing(12);
    h->addStretch(1);
    h->addWidget(makeLabel("LabelOwnCall", bar));
    ownCall_ = makeField("Text11", 8, bar);
    ownCall_->setReadOnly(true);
    ownCall_->setFocusPolicy(Qt::NoFocus);
    h->addWidget(ownCall_);
    h->addWidget(makeLabel("LabelOwnLocator", bar));
    ownLocator_ = makeField("Text13", 6, bar);
    ownLocator_->setReadOnly(true);
    ownLocator_->setFocusPolicy(Qt::NoFocus);
    h->addWidget(ownLocator_);
    return bar;
}

QWidget* MainWindow::buildEntryRow() {
    entryRow_ = new QFrame(this);
    entryRow_->setObjectName("Picture3");
    static_cast<QFrame*>(entryRow_)->setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(entryRow_);
    g->setContentsMargins(8, 4, 8, 6);
    g->setHorizontalSpacing(6);
    g->setVerticalSpacing(2);

    // The fields that log a QSO get a larger face: they are read all day.
    QFont big = font();
    if (big.pointSizeF() > 0)
        big.setPointSizeF(big.pointSizeF() * 1.35);
    else
        big.setPixelSize(big.pixelSize() * 135 / 100);
    big.setBold(true);

    int col = 0;
    auto add = [&](const char* label, QWidget* field, bool large = false) {
        g->addWidget(makeLabel(label, entryRow_), 0, col);
        if (large)
            field->setFont(big);
        g->addWidget(field, 1, col);
        return col++;
    };
    time_ = makeField("Text2", 5, entryRow_);
    add("Label6", time_, true);

    datePanel_ = new QWidget(entryRow_);
    datePanel_->setObjectName("Picture13");
    auto* dp = new QVBoxLayout(datePanel_);
    dp->setContentsMargins(0, 0, 0, 0);
    dp->setSpacing(2);
    dp->addWidget(makeLabel("LabelDate", datePanel_));
    date_ = makeField("Text1", 10, datePanel_);
    date_->setFont(big);
    dp->addWidget(date_);
    g->addWidget(datePanel_, 0, col++, 2, 1);
    datePanel_->hide();

    call_ = makeField("Text3", 10, entryRow_);
    add("Label2", call_, true);
    rstSent_ = makeField("Text4", 3, entryRow_);
    add("Label3", rstSent_, true);
    rstSent_->setText("59");
    serialSent_ = makeField("Text5", 4, entryRow_);
    serialSent_->setReadOnly(true);
    serialSent_->setFocusPolicy(Qt::ClickFocus);
    add("Label5", serialSent_, true);
    serialSent_->setText("001");
    rstReceived_ = makeField("Text6", 6, entryRow_);
    add("Label4", rstReceived_, true);
    locator_ = makeField("Text7", 6, entryRow_);
    add("Label7", locator_, true);
    qrb_ = makeField("Text8", 5, entryRow_);
    qrb_->setReadOnly(true);
    qrb_->setFocusPolicy(Qt::ClickFocus);
    add("Label8", qrb_, true);
    qtf_ = makeField("Text12", 4, entryRow_);
    qtf_->setReadOnly(true);
    qtf_->setFocusPolicy(Qt::ClickFocus);
    add("Label30", qtf_);
    notice_ = makeField("Text9", 14, entryRow_);
    const int noticeCol = add("Label10", notice_);
    g->setColumnStretch(noticeCol, 1);
    qsl_ = makeField("Text10", 3, entryRow_);
    qsl_->setText("No");
    add("Label9", qsl_);
    modeTx_ = makeCombo("Combo3", 4, false, entryRow_);
    add("LabelTxMode", modeTx_);
    modeRx_ = makeCombo("Combo2", 4, false, entryRow_);
    add("LabelRxMode", modeRx_);
    propagation_ = makeCombo("Combo6", 3, true, entryRow_);
    propagation_->lineEdit()->setMaxLength(3);
    add("LabelProp", propagation_);
    operator_ = makeCombo("Combo8", 8, true, entryRow_);
    add("LabelOperator", operator_);
    return entryRow_;
}

QWidget* MainWindow::buildCorrectionLine() {
    auto* line = new QFrame(this);
    correctionLine_ = line;
    line->setObjectName("Picture33");
    line->setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(line);
    g->setContentsMargins(8, 4, 8, 6);
    int col = 0;
    auto add = [&](const char* label, QWidget* field) {
        g->addWidget(makeLabel(label, line), 0, col);
        g->addWidget(field, 1, col++);
    };
    add("EditLabelCall", makeField("Text33", 10, line));
    add("EditLabelRst", makeField("Text44", 3, line));
    auto* nr = makeField("Text55", 4, line);
    nr->setReadOnly(true);
    add("EditLabelNr", nr);
    add("EditLabelRstNr", makeField("Text66", 6, line));
    add("EditLabelLocator", makeField("Text77", 6, line));
    auto* qrb = makeField("Text88", 5, line);
    qrb->setReadOnly(true);
    add("EditLabelQrb", qrb);
    editTime_ = makeField("Text22", 5, line);
    add("EditLabelTime", editTime_);
    add("Label25", makeField("Text14", 10, line));
    add("Label26", makeCombo("Combo4", 4, false, line));
    add("Label29", makeCombo("Combo5", 4, false, line));
    editQsl_ = makeField("Text101", 3, line);
    add("EditLabelQsl", editQsl_);
    add("Label24", makeField("Text99", 14, line));
    auto* editProp = makeCombo("Combo7", 3, true, line);
    editProp->lineEdit()->setMaxLength(3);
    add("Label1", editProp);
    add("EditLabelOperator", makeCombo("Combo9", 8, true, line));
    for (QComboBox* c : line->findChildren<QComboBox*>())
        c->installEventFilter(this);
    line->hide();
    return line;
}

QWidget* MainWindow::buildPanels() {
    auto* holder = new QWidget(this);
    auto* v = new QVBoxLayout(holder);
    v->setContentsMargins(0, 0, 0, 0);

    // The earlier QSO of a duplicate, with the key that marks it deleted.
    auto* dup = new QFrame(holder);
    duplicatePanel_ = dup;
    dup->setObjectName("Picture11");
    dup->setFrameShape(QFrame::StyledPanel);
    dup->setStyleSheet("#Picture11 { background: #ffe0e0; }");
    auto* dh = new QHBoxLayout(dup);
    for (int i = 0; i < 10; ++i) {
        auto* l = makeLabel(QString("Dup%1").arg(i).toLatin1().constData(), dup);
        dupLabels_[static_cast<std::size_t>(i)] = l;
        dh->addWidget(l, i == 9 ? 1 : 0);
    }
    auto* resolve = new QPushButton("F11", dup);
    resolve->setObjectName("Command1");
    connect(resolve, &QPushButton::clicked, this, [this] {
        if (onResolveDuplicate)
            onResolveDuplicate();
    });
    resolve->setEnabled(false);
    dh->addWidget(resolve);
    dup->hide();
    v->addWidget(dup);

    workedElsewhere_ = new QGroupBox(holder);
    workedElsewhere_->setObjectName("Frame3");
    auto* wv = new QHBoxLayout(workedElsewhere_);
    workedGrid_ = new QTableWidget(0, 8, workedElsewhere_);
    workedGrid_->setObjectName("MSFlexGrid2");
    workedGrid_->verticalHeader()->setVisible(false);
    workedGrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    workedGrid_->setMaximumHeight(workedGrid_->fontMetrics().height() * 7);
    wv->addWidget(workedGrid_, 1);
    auto* closeWorked = new QPushButton(workedElsewhere_);
    closeWorked->setObjectName("Command3");
    connect(closeWorked, &QPushButton::clicked, workedElsewhere_, &QWidget::hide);
    wv->addWidget(closeWorked, 0, Qt::AlignTop);
    workedElsewhere_->hide();
    v->addWidget(workedElsewhere_);

    comparison_ = new QGroupBox(holder);
    comparison_->setObjectName("Frame4");
    auto* cv = new QVBoxLayout(comparison_);
    comparisonGrid_ = new QTableWidget(0, 3, comparison_);
    comparisonGrid_->setObjectName("MSFlexGrid3");
    comparisonGrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    cv->addWidget(comparisonGrid_);
    auto* ch = new QHBoxLayout;
    for (const char* name : {"Command5", "Command6", "Command4", "Command7", "Command2"}) {
        auto* b = new QPushButton(comparison_);
        b->setObjectName(name);
        b->setEnabled(false);
        ch->addWidget(b);
    }
    cv->addLayout(ch);
    comparison_->findChild<QPushButton*>("Command2")->setEnabled(true);
    connect(comparison_->findChild<QPushButton*>("Command2"), &QPushButton::clicked, comparison_,
            &QWidget::hide);
    comparison_->hide();
    v->addWidget(comparison_);
    return holder;
}

QWidget* MainWindow::buildSidePanel() {
    auto* side = new QWidget(this);
    side->setObjectName("Picture5Side");
    auto* v = new QVBoxLayout(side);
    v->setContentsMargins(0, 0, 0, 0);

    statistics_ = new QGroupBox(side);
    statistics_->setObjectName("Frame1");
    auto* g = new QGridLayout(statistics_);
    QFont value = font();
    value.setBold(true);
    if (value.pointSizeF() > 0)
        value.setPointSizeF(value.pointSizeF() * 1.25);
    const std::pair<const char*, const char*> rows[] = {
        {"Label14", "Label18"}, {"Label15", "Label19"}, {"Label16", "Label20"},
        {"Label17", "Label21"}, {"Label27", "Label28"}, {"Label32", "Label31"},
    };
    int r = 0;
    for (const auto& [caption, number] : rows) {
        g->addWidget(makeLabel(caption, statistics_), r, 0);
        QLabel* n = makeLabel(number, statistics_);
        n->setFont(value);
        n->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        n->setText("0");
        g->addWidget(n, r++, 1);
    }
    v->addWidget(statistics_);
    for (const char* name : {"Label17", "Label21", "Label27", "Label28"})
        statistics_->findChild<QLabel*>(name)->installEventFilter(this);

    auto* meter = new QFrame(side);
    meter->setObjectName("Picture7");
    meter->setFrameShape(QFrame::StyledPanel);
    auto* mh = new QHBoxLayout(meter);
    mh->addWidget(makeLabel("LabelRate", meter));
    rate_ = makeLabel("ZeigerZahl", meter);
    rate_->setAlignment(Qt::AlignCenter);
    rate_->setFont(value);
    rate_->setMinimumWidth(rate_->fontMetrics().horizontalAdvance("00000") + 12);
    rate_->setAutoFillBackground(true);
    rate_->setText("0");
    rate_->installEventFilter(this);
    mh->addWidget(rate_);
    v->addWidget(meter);
    v->addWidget(buildBeaconPanel(side));

    lookupList_ = new QListWidget(side);
    lookupList_->setObjectName("List1");
    QFont mono("monospace");
    mono.setStyleHint(QFont::Monospace);
    lookupList_->setFont(mono);
    lookupList_->setFocusPolicy(Qt::NoFocus);
    lookupList_->setMinimumWidth(lookupList_->fontMetrics().horizontalAdvance(QString(34, 'W')));
    v->addWidget(lookupList_, 1);
    return side;
}

void MainWindow::wireFields() {
    const QList<QWidget*> fields = {time_,        date_,    call_,   rstSent_,     serialSent_,
                                    rstReceived_, locator_, qrb_,    qtf_,         notice_,
                                    qsl_,         modeTx_,  modeRx_, propagation_, operator_};
    for (QWidget* f : fields)
        f->installEventFilter(this);
    propagation_->lineEdit()->installEventFilter(this);
    operator_->lineEdit()->installEventFilter(this);
    for (auto* e : correctionLine_->findChildren<QLineEdit*>())
        e->installEventFilter(this);
    maxBake_->installEventFilter(this);
    maxBake_->lineEdit()->installEventFilter(this);

    // Pasted text is folded as typed text is.
    auto fold = [](QLineEdit* e) {
        connect(e, &QLineEdit::textEdited, e, [e](const QString& t) {
            const QString up = t.toUpper();
            if (up != t) {
                const int pos = e->cursorPosition();
                e->setText(up);
                e->setCursorPosition(pos);
            }
        });
    };
    fold(call_);
    fold(locator_);
    fold(rstSent_);
    fold(rstReceived_);
    fold(propagation_->lineEdit());
    auto* editCall = correctionLine_->findChild<QLineEdit*>("Text33");
    auto* editLocator = correctionLine_->findChild<QLineEdit*>("Text77");
    fold(editCall);
    fold(editLocator);
    fold(correctionLine_->findChild<QLineEdit*>("Text44"));
    fold(correctionLine_->findChild<QLineEdit*>("Text66"));
    connect(editLocator, &QLineEdit::textChanged, this, [this](const QString& t) {
        if (!editLoading_)
            emit editLocatorEdited(t);
    });
    // Each change of the propagation is remembered for the band.
    connect(propagation_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        const int band = currentBand();
        if (band >= 0 && band < kBandCount)
            bandProp_[static_cast<std::size_t>(band)] = t.trimmed();
    });
    // Pasted text keeps its digits only, four at most.
    connect(maxBake_->lineEdit(), &QLineEdit::textEdited, maxBake_, [this](const QString& t) {
        QString digits;
        for (QChar c : t)
            if (c.isDigit())
                digits += c;
        digits = digits.left(4);
        if (digits != t)
            maxBake_->lineEdit()->setText(digits);
    });

    connect(locator_, &QLineEdit::textChanged, this, [this](const QString& t) {
        status_->clear();
        emit locatorEdited(t);
    });
    connect(call_, &QLineEdit::textChanged, this, [this] {
        duplicatePanel_->hide();
        workedElsewhere_->hide();
    });
    connect(modeTx_, &QComboBox::activated, this, [this] {
        if (!modeSwitching_)
            call_->setFocus(Qt::OtherFocusReason);
    });
    connect(modeRx_, &QComboBox::activated, this, [this] {
        if (!modeSwitching_)
            call_->setFocus(Qt::OtherFocusReason);
    });
}

EntryRow MainWindow::entryRow() const {
    EntryRow r;
    r.call = call_->text().toStdString();
    r.rst = rstSent_->text().toStdString();
    r.serial = serialSent_->text().toStdString();
    r.rstNr = rstReceived_->text().toStdString();
    r.locator = locator_->text().toStdString();
    r.note = notice_->text().toStdString();
    r.qsl = qsl_->text().toStdString();
    r.time = time_->text().toStdString();
    r.date = date_->text().toStdString();
    r.datePanel = datePanel_->isVisible();
    r.mode = modeTx_->currentText().toStdString();
    r.rxMode = modeRx_->currentText().toStdString();
    r.prop = propagation_->currentText().toStdString();
    r.op = operator_->currentText().toStdString();
    r.name = currentName_.toStdString();
    return r;
}

void MainWindow::setEntryRow(const EntryRow& r) {
    call_->setText(q(r.call));
    rstSent_->setText(q(r.rst));
    serialSent_->setText(q(r.serial));
    rstReceived_->setText(q(r.rstNr));
    locator_->setText(q(r.locator));
    notice_->setText(q(r.note));
    qsl_->setText(q(r.qsl));
    currentName_ = q(r.name);
    if (r.locator.empty())
        setPreview({}, {});
}

void MainWindow::focusNamed(const std::string& control) {
    auto* target = findChild<QWidget*>(q(control));
    if (!target || !target->isVisible())
        target = call_;
    focusField(target, true);
}

void MainWindow::showDuplicate(const DuplicatePanel& panel) {
    for (std::size_t i = 0; i < panel.dup.size(); ++i)
        dupLabels_[i]->setText(q(panel.dup[i]));
    duplicatePanel_->findChild<QPushButton*>("Command1")->setEnabled(true);
    duplicatePanel_->show();
}

void MainWindow::hideDuplicate() {
    duplicatePanel_->hide();
}

void MainWindow::showWorkedElsewhere(const std::vector<WorkedOnBand>& rows) {
    workedGrid_->setRowCount(0);
    for (const WorkedOnBand& r : rows) {
        const int at = workedGrid_->rowCount();
        workedGrid_->insertRow(at);
        for (int c = 0; c < 8; ++c) {
            auto* item = new QTableWidgetItem(q(r.cells[static_cast<std::size_t>(c)]));
            if (c == 0)
                item->setBackground(QColor(255, 0, 0));
            workedGrid_->setItem(at, c, item);
        }
    }
    workedElsewhere_->setVisible(!rows.empty());
}

void MainWindow::setPreview(const QString& km, const QString& bearing) {
    qrb_->setText(km);
    qtf_->setText(bearing);
}

void MainWindow::readyForNext() {
    timer1_->start();
    tickClock();
    status_->clear();
    focusField(call_, false);
}

void MainWindow::setOperators(const QStringList& calls, const QString& current) {
    operator_->clear();
    operator_->addItems(calls);
    if (auto* edit = findChild<QComboBox*>("Combo9")) {
        edit->clear();
        edit->addItems(calls);
    }
    const int at = current.isEmpty() ? -1 : operator_->findText(current);
    if (at >= 0)
        operator_->setCurrentIndex(at);
    else if (operator_->count() > 0)
        operator_->setCurrentIndex(0);
    else
        operator_->setEditText(current);
}

void MainWindow::setModes(const QStringList& modes) {
    for (const char* name : {"Combo3", "Combo2", "Combo4", "Combo5"}) {
        auto* c = findChild<QComboBox*>(name);
        c->clear();
        c->addItems(modes);
    }
}

void MainWindow::setCurrentMode(const QString& mode) {
    modeTx_->setCurrentText(mode);
    modeRx_->setCurrentText(mode);
}

void MainWindow::setPropagations(const QStringList& entries, const QString& current) {
    for (const char* name : {"Combo6", "Combo7"}) {
        auto* c = findChild<QComboBox*>(name);
        c->clear();
        c->addItems(entries);
        c->addItem(QString());
    }
    propagation_->setEditText(current);
}

void MainWindow::setFieldColours(const FieldColours& colours) {
    colours_ = colours;
    const QList<QWidget*> inactive = {call_, rstSent_, rstReceived_, locator_,     notice_,  qsl_,
                                      date_, modeTx_,  modeRx_,      propagation_, operator_};
    for (QWidget* w : inactive)
        colourField(w, w->hasFocus());
    for (QLineEdit* w : correctionLine_->findChildren<QLineEdit*>())
        setBackground(w, w->isReadOnly() ? colours_.noEdit : colours_.inAktiv);
    for (QWidget* w : {static_cast<QWidget*>(serialSent_), static_cast<QWidget*>(qrb_),
                       static_cast<QWidget*>(qtf_)})
        setBackground(w, colours_.noEdit);
    colourField(time_, time_->hasFocus());
    paintBandButtons();
}

void MainWindow::colourField(QWidget* field, bool focused) {
    if (field == time_ && time_->isReadOnly()) {
        setBackground(field, colours_.noEdit);
        return;
    }
    if (field == serialSent_ || field == qrb_ || field == qtf_) {
        setBackground(field, colours_.noEdit);
        return;
    }
    const QColor c = focused ? colours_.aktiv : colours_.inAktiv;
    setBackground(field, c);
    if (auto* combo = qobject_cast<QComboBox*>(field); combo && combo->lineEdit())
        setBackground(combo->lineEdit(), c);
}

void MainWindow::setTimeEditable(bool editable) {
    time_->setReadOnly(!editable);
    time_->setFocusPolicy(editable ? Qt::StrongFocus : Qt::ClickFocus);
    timeEditAction_->setChecked(editable);
    if (!editable) {
        timer1_->start();
        tickClock();
    }
    colourField(time_, time_->hasFocus());
}

bool MainWindow::timeEditable() const {
    return !time_->isReadOnly();
}

void MainWindow::setModeSwitch(bool on, const QString& mode2St, const QString& mode3St) {
    modeSwitch_ = on;
    mode2St_ = mode2St;
    mode3St_ = mode3St;
}

void MainWindow::setOwnStation(const QString& call, const QString& locator) {
    ownCall_->setText(call);
    ownLocator_->setText(locator);
}

void MainWindow::setLast(const QString& call, const QString& locator) {
    lastCall_ = call;
    lastLocator_ = locator;
}

void MainWindow::selectBand(int index) {
    if (index < 0 || index >= kBandCount)
        return;
    if (bandBox_->currentIndex() == index)
        paintBandButtons();
    else
        bandBox_->setCurrentIndex(index);
}

int MainWindow::currentBand() const {
    return bandBox_->currentIndex();
}

void MainWindow::setBandHasQsos(int index, bool has) {
    if (index < 0 || index >= kBandCount)
        return;
    bandHasQsos_[static_cast<std::size_t>(index)] = has;
    paintBandButtons();
}

bool MainWindow::bandHasQsos(int index) const {
    return index >= 0 && index < kBandCount && bandHasQsos_[static_cast<std::size_t>(index)];
}

void MainWindow::paintBandButtons() {
    const int current = bandBox_ ? bandBox_->currentIndex() : -1;
    for (int i = 0; i < kBandCount; ++i) {
        QPushButton* b = bandButtons_[static_cast<std::size_t>(i)];
        if (!b)
            continue;
        if (i == current)
            b->setStyleSheet("QPushButton { background: rgb(255,0,0); color: white; "
                             "font-weight: bold; }");
        else if (bandHasQsos_[static_cast<std::size_t>(i)])
            b->setStyleSheet(
                QString("QPushButton { background: %1; }").arg(colours_.bereitsQso.name()));
        else
            b->setStyleSheet(QString());
    }
}

void MainWindow::setBandFigures(const BandFigures& f) {
    auto set = [this](const char* name, const QString& text) {
        findChild<QLabel*>(name)->setText(text);
    };
    set("Label18", QString::number(f.lastQsoNr));
    set("Label19", QString::number(f.pGesamt));
    set("Label20", f.kmPerQso);
    set("Label21", QString::number(f.odx));
    set("Label28", QString::number(f.squares));
    set("Label31", QString::number(f.deleted));
}

void MainWindow::setRate(const std::optional<RateReading>& reading) {
    if (!reading)
        return;
    rate_->setText(QString::number(reading->count));
    QPalette p = rate_->palette();
    p.setColor(QPalette::Window, QColor(reading->color.r, reading->color.g, reading->color.b));
    p.setColor(QPalette::WindowText, Qt::black);
    rate_->setPalette(p);
}

void MainWindow::setNextSerial(const QString& serial) {
    serialSent_->setText(serial);
}

void MainWindow::showStatus(const QString& text) {
    status_->setText(text);
}

bool MainWindow::clockRunning() const {
    return timer1_->isActive();
}

bool MainWindow::editLineOpen() const {
    return correctionLine_->isVisible();
}

void MainWindow::tickClock() {
    const QString now = q(clock_.now().addHours(zeitPlusMinus_).timeHM());
    if (time_->text() != now)
        time_->setText(now);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    timer1_->stop();
    emit closing();
    QMainWindow::closeEvent(event);
}

void MainWindow::focusField(QWidget* field, bool selectAll) {
    field->setFocus(Qt::OtherFocusReason);
    if (auto* e = qobject_cast<QLineEdit*>(field)) {
        if (selectAll)
            e->selectAll();
    } else if (auto* c = qobject_cast<QComboBox*>(field); c && c->lineEdit() && selectAll) {
        c->lineEdit()->selectAll();
    }
}

} // namespace orv::ui
