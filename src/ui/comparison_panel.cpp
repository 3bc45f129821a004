#include "ui/comparison_panel.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "ui/calldb_editor.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

constexpr int kColumns = 14;
constexpr int kKindRole = Qt::UserRole;
constexpr int kKeyRole = Qt::UserRole + 1;
// The colour value 32896 of the separator rows: red and green at 128.
const QColor kSeparator(128, 128, 0);
const QColor kActiveButton(255, 0, 0);

QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

QString dateText(const DateTime& d) {
    return QString::asprintf("%02d.%02d.%04d", d.day, d.month, d.year);
}

int twipsToPixels(const QWidget* w, int twips) {
    return twips * w->logicalDpiX() / 1440;
}

} // namespace

ComparisonPanel::ComparisonPanel(MainWindow& window, const AppPaths& paths, const Texts& texts,
                                 Sources sources)
    : QObject(&window), window_(window), paths_(paths), texts_(texts),
      sources_(std::move(sources)) {
    setObjectName("ComparisonPanel");
    frame_ = window_.findChild<QWidget*>("Frame4");
    grid_ = frame_->findChild<QTableWidget*>("MSFlexGrid3");
    byCall_ = frame_->findChild<QPushButton*>("Command5");
    byLocator_ = frame_->findChild<QPushButton*>("Command6");
    nothingFound_ = frame_->findChild<QPushButton*>("Command4");
    menu_ = window_.findChild<QMenu*>("MnMSFlexGrid3");

    byCall_->setEnabled(true);
    byLocator_->setEnabled(true);
    nothingFound_->setEnabled(true);
    nothingFound_->hide();
    connect(byCall_, &QPushButton::clicked, this, [this] { compare(CompareBy::Call); });
    connect(byLocator_, &QPushButton::clicked, this, [this] { compare(CompareBy::Locator); });
    connect(nothingFound_, &QPushButton::clicked, this, &ComparisonPanel::close);
    if (auto* close2 = frame_->findChild<QPushButton*>("Command2"))
        connect(close2, &QPushButton::clicked, this, &ComparisonPanel::close);
    // Escape and a pulled-down menu hide the frame from the window's side;
    // the main panels come back whichever way it went.
    frame_->installEventFilter(this);
    connect(&window_, &MainWindow::comparisonQsoCorrected, this, &ComparisonPanel::qsoCorrected);

    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->verticalHeader()->setVisible(false);
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid_, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        const int row = grid_->rowAt(pos.y());
        if (QMenu* m = menuFor(row))
            m->popup(grid_->viewport()->mapToGlobal(pos));
    });
    connect(grid_, &QTableWidget::cellDoubleClicked, this,
            [this](int row, int) { doubleClicked(row); });

    if (menu_) {
        auto bind = [this](const char* name, auto fn) {
            if (auto* a = menu_->findChild<QAction*>(name))
                connect(a, &QAction::triggered, this, fn);
        };
        bind("MnGrid3Edit", [this] { editQso(menuRow_); });
        bind("MnGrid3CallGO", [this] { takeRecord(menuRow_, true, false); });
        bind("MnGrid3LocGO", [this] { takeRecord(menuRow_, false, true); });
        bind("MnGrid3CallLocGO", [this] { takeRecord(menuRow_, true, true); });
        bind("MnGrid3DBEdit", [this] { noteRecord(menuRow_); });
    }
    if (auto* entry = window_.findChild<QAction*>("MnDBCheck")) {
        entry->setEnabled(true);
        connect(entry, &QAction::triggered, this, &ComparisonPanel::open);
    }
    Grid3Set();
}

void ComparisonPanel::Grid3Set() {
    grid_->setColumnCount(kColumns);
    QStringList heads{q(texts_(153)), q(texts_(151)), q(texts_(155))};
    for (const Band& b : kBands)
        heads << q(b.caption);
    heads << q(texts_(174));
    grid_->setHorizontalHeaderLabels(heads);
    const int twips[kColumns] = {700, 1780, 1000, 550, 550, 550, 550,
                                 550, 550,  550,  550, 550, 550, 1600};
    for (int c = 0; c < kColumns; ++c)
        grid_->setColumnWidth(c, twipsToPixels(grid_, twips[c]));
}

void ComparisonPanel::setPanelsEnabled(bool on) {
    for (const char* name :
         {"Picture1", "Picture5", "Picture5Side", "Frame1", "Picture7", "Frame2"})
        if (auto* w = window_.findChild<QWidget*>(name))
            w->setEnabled(on);
}

void ComparisonPanel::open() {
    if (auto* grid1 = window_.findChild<QTableView*>("MSFlexGrid1"))
        grid1->scrollToTop();
    setPanelsEnabled(false);
    frame_->show();
    compare(CompareBy::Call);
}

void ComparisonPanel::close() {
    if (window_.editLineOpen())
        window_.closeEditLine(false);
    frame_->hide();
    setPanelsEnabled(true);
    window_.focusNamed("Text3");
}

bool ComparisonPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == frame_ && event->type() == QEvent::Hide)
        setPanelsEnabled(true);
    return QObject::eventFilter(watched, event);
}

void ComparisonPanel::compare(CompareBy by) {
    QPushButton* active = by == CompareBy::Call ? byCall_ : byLocator_;
    QPushButton* other = by == CompareBy::Call ? byLocator_ : byCall_;
    other->setStyleSheet(QString());
    active->setStyleSheet(QString("QPushButton { background: %1; }").arg(kActiveButton.name()));
    active->setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);

    grid_->setUpdatesEnabled(false);
    grid_->setRowCount(0);
    nothingFound_->hide();
    shown_ = sources_.image ? sources_.image() : nullptr;
    Capture* capture = sources_.capture ? sources_.capture() : nullptr;
    if (capture && shown_) {
        const int band = capture->band();
        std::vector<QsoRow> rows;
        rows.reserve(capture->state().rows().size());
        for (const GridRow& r : capture->state().rows())
            rows.push_back(r.qso);
        const int mindest = MindestZahl(paths_, sources_.logName(), band);
        for (const CompareGroup& g : compareWithCallDb(*shown_, rows, band, mindest, by)) {
            if (grid_->rowCount() > 0)
                addSeparator();
            addQsoRow(g.qso, band);
            for (auto n : g.records)
                addRecordRow(shown_->record(n), n);
        }
    }
    grid_->setUpdatesEnabled(true);
    nothingFound_->setVisible(grid_->rowCount() == 0);
    QApplication::restoreOverrideCursor();
    active->setEnabled(true);
}

void ComparisonPanel::addSeparator() {
    const int r = grid_->rowCount();
    grid_->insertRow(r);
    for (int c = 0; c < kColumns; ++c) {
        auto* item = new QTableWidgetItem;
        item->setBackground(kSeparator);
        item->setFlags(Qt::ItemIsEnabled);
        if (c == 0)
            item->setData(kKindRole, static_cast<int>(RowKind::Separator));
        grid_->setItem(r, c, item);
    }
    grid_->setRowHeight(r, std::max(grid_->verticalHeader()->defaultSectionSize() / 2, 4));
}

void ComparisonPanel::addQsoRow(const QsoRow& qso, int band) {
    const int r = grid_->rowCount();
    grid_->insertRow(r);
    // The QSO stands out with the grid's colours swapped.
    const QPalette pal = grid_->palette();
    const QColor back = pal.color(QPalette::Text);
    const QColor fore = pal.color(QPalette::Base);
    for (int c = 0; c < kColumns; ++c) {
        QString text;
        if (c == 0)
            text = QString::number(qso.qsoNr);
        else if (c == 1)
            text = q(qso.call);
        else if (c == 2)
            text = q(qso.locator);
        else if (c < 3 + kBandCount)
            text = (c - 3 == band) ? QStringLiteral("***") : QString();
        else
            text = dateText(qso.datTime) + " " + q(qso.datTime.timeHM());
        auto* item = new QTableWidgetItem(text);
        item->setBackground(back);
        item->setForeground(fore);
        if (c >= 3 && c < 3 + kBandCount)
            item->setTextAlignment(Qt::AlignCenter);
        if (c == 0) {
            item->setData(kKindRole, static_cast<int>(RowKind::Qso));
            item->setData(kKeyRole, static_cast<qlonglong>(qso.qsoNr));
        }
        grid_->setItem(r, c, item);
    }
}

void ComparisonPanel::addRecordRow(const QBDatEntry& e, std::uint32_t recordNr) {
    const int r = grid_->rowCount();
    grid_->insertRow(r);
    for (int c = 0; c < kColumns; ++c) {
        QString text;
        if (c == 1)
            text = q(e.Call());
        else if (c == 2)
            text = q(e.Locator());
        else if (c >= 3 && c < 3 + kBandCount)
            text = QString::number(e.counters[static_cast<std::size_t>(c - 3)]);
        else if (c == 13 && e.lastDate().year >= 1900)
            text = dateText(e.lastDate());
        auto* item = new QTableWidgetItem(text);
        if (c >= 3 && c < 3 + kBandCount)
            item->setTextAlignment(Qt::AlignCenter);
        if (c == 0) {
            item->setData(kKindRole, static_cast<int>(RowKind::Record));
            item->setData(kKeyRole, static_cast<qlonglong>(recordNr));
        }
        grid_->setItem(r, c, item);
    }
}

ComparisonPanel::RowKind ComparisonPanel::rowKind(int row) const {
    if (row < 0 || row >= grid_->rowCount() || !grid_->item(row, 0))
        return RowKind::None;
    return static_cast<RowKind>(grid_->item(row, 0)->data(kKindRole).toInt());
}

std::optional<QBDatEntry> ComparisonPanel::recordOf(int row) const {
    if (rowKind(row) != RowKind::Record || !shown_)
        return std::nullopt;
    const auto n = static_cast<std::uint32_t>(grid_->item(row, 0)->data(kKeyRole).toLongLong());
    if (n < 1 || n > shown_->size())
        return std::nullopt;
    return shown_->record(n);
}

QMenu* ComparisonPanel::menuFor(int row) {
    const RowKind kind = rowKind(row);
    if (!menu_ || (kind != RowKind::Qso && kind != RowKind::Record))
        return nullptr;
    menuRow_ = row;
    grid_->selectRow(row);
    const bool qso = kind == RowKind::Qso;
    // A QSO row offers its correction; a record row what it can give to the
    // correction line, which must be open for that, and the note.
    const bool editing = window_.editLineOpen();
    for (QAction* a : menu_->actions()) {
        const QString n = a->objectName();
        const bool forQso = n == "MnGrid3Edit";
        a->setVisible(forQso == qso);
        a->setEnabled(forQso || n == "MnGrid3DBEdit" || editing);
    }
    return menu_;
}

void ComparisonPanel::doubleClicked(int row) {
    switch (rowKind(row)) {
    case RowKind::Qso:
        editQso(row);
        break;
    case RowKind::Record:
        if (window_.editLineOpen())
            takeRecord(row, true, true);
        break;
    default:
        break;
    }
}

void ComparisonPanel::qsoCorrected(const QString& call, const QString& locator) {
    // The QSO row the correction came from, even when a record row was
    // chosen since to fill the correction line.
    const int row = editedRow_;
    if (rowKind(row) != RowKind::Qso)
        return;
    grid_->item(row, 1)->setText(call);
    grid_->item(row, 2)->setText(locator);
    // &HC000C0: a corrected row stands out from the rows still in doubt.
    for (int c = 0; c < grid_->columnCount(); ++c)
        if (auto* item = grid_->item(row, c))
            item->setBackground(QColor(192, 0, 192));
}

void ComparisonPanel::editQso(int row) {
    if (rowKind(row) != RowKind::Qso)
        return;
    editedRow_ = row;
    Capture* capture = sources_.capture ? sources_.capture() : nullptr;
    if (!capture)
        return;
    const auto nr = grid_->item(row, 0)->data(kKeyRole).toLongLong();
    // The log grid holds the band's rows in the capture's order.
    const auto& rows = capture->state().rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].qso.qsoNr == nr && !rows[i].qso.errQso) {
            window_.gridDoubleClicked(static_cast<int>(i));
            return;
        }
    }
}

void ComparisonPanel::takeRecord(int row, bool call, bool locator) {
    const std::optional<QBDatEntry> e = recordOf(row);
    if (!e || !window_.editLineOpen())
        return;
    auto* callField = window_.findChild<QLineEdit*>("Text33");
    auto* locField = window_.findChild<QLineEdit*>("Text77");
    if (locator && locField)
        locField->setText(q(e->Locator()));
    if (call && callField) {
        callField->setText(q(e->Call()));
        callField->setFocus(Qt::OtherFocusReason);
        callField->selectAll();
    }
}

void ComparisonPanel::noteRecord(int row) {
    if (const std::optional<QBDatEntry> e = recordOf(row))
        noteForEditor(paths_, std::string(e->Call()), std::string(e->Locator()));
}

} // namespace orv::ui
