#include "ui/station_qsos_dialog.h"

#include <QBrush>
#include <QColor>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <stdexcept>

#include "core/capture/capture.h"
#include "core/capture/entry_rules.h"
#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/shared/remote_correction.h"
#include "core/shared/shared_store.h"
#include "ui/captions.h"
#include "ui/correction_line.h"
#include "ui/key_events.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

constexpr int kTitle = 1365, kDeleted = 1366, kHint = 1367, kNotStored = 1368, kEditHint = 621,
              kStored = 622, kNotRead = 623, kPosition = 1339, kClose = 1348;
// Captions of the grid: call, locator, RST, number, QRB, date, time.
constexpr int kCall = 151, kLocator = 155, kRst = 152, kNr = 153, kQrb = 156, kDate = 159,
              kTime = 150;

// The labels of the correction line that the main window's layout adds to
// the named ones.
constexpr CaptionRow kLineCaptions[] = {
    {"EditLabelCall", 151},  {"EditLabelRst", 152},     {"EditLabelNr", 153},
    {"EditLabelRstNr", 154}, {"EditLabelLocator", 155}, {"EditLabelQrb", 156},
    {"EditLabelTime", 150},  {"EditLabelQsl", 157},     {"EditLabelOperator", 209},
};

} // namespace

StationQsosDialog::StationQsosDialog(sql::Db& db, Capture& capture, const Texts& texts,
                                     std::function<void()> changed, QWidget* parent)
    : QDialog(parent), db_(db), capture_(capture), texts_(texts), changed_(std::move(changed)),
      dialogs_(this) {
    setObjectName("StationQsos");
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(q(texts_(kHint)), this);
    hint->setObjectName("StationQsoHint");
    filter_ = new QLineEdit(this);
    filter_->setObjectName("StationQsoFilter");
    filter_->setPlaceholderText(q(texts_(kCall)));
    // The table keeps the focus and hands typed characters to the filter.
    filter_->setFocusPolicy(Qt::NoFocus);
    table_ = new QTableWidget(0, 10, this);
    table_->setObjectName("StationQsoTable");
    table_->setHorizontalHeaderLabels({q(texts_(kPosition)), q(texts_(kNr)), q(texts_(kCall)),
                                       q(texts_(kLocator)), q(texts_(kDate)), q(texts_(kTime)),
                                       q(texts_(kRst)), q(texts_(kRst) + texts_(kNr)),
                                       q(texts_(kQrb)), q(texts_(kDeleted))});
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->installEventFilter(this);
    line_ = new CorrectionLine(beeper_, this);
    applyCaptions(*line_, mainWindowCaptions(), texts_);
    applyCaptions(*line_, kLineCaptions, texts_);
    for (QWidget* f : line_->fields())
        f->installEventFilter(this);
    connect(line_, &CorrectionLine::commitRequested, this, &StationQsosDialog::storeEdit);
    connect(line_, &CorrectionLine::locatorEdited, this, [this](const QString& loc) {
        const auto p = capture_.preview(loc.toStdString());
        line_->setQrb(p ? QString::number(p->km) : QString());
    });
    state_ = new QLabel(this);
    state_->setObjectName("StationQsoState");
    auto* close = new QPushButton(q(texts_(kClose)), this);
    close->setObjectName("StationQsoClose");
    close->setAutoDefault(false);
    close->setFocusPolicy(Qt::NoFocus);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(filter_, &QLineEdit::textChanged, this, [this] { fill(selectedUid()); });
    layout->addWidget(hint);
    layout->addWidget(filter_);
    layout->addWidget(table_);
    layout->addWidget(line_);
    layout->addWidget(state_);
    layout->addWidget(close, 0, Qt::AlignRight);

    // The worker fetches in the background: the list follows the cache.
    auto* timer = new QTimer(this);
    timer->setObjectName("StationQsoTimer");
    connect(timer, &QTimer::timeout, this, &StationQsosDialog::refresh);
    timer->start(500);
    refresh();
    table_->setFocus();
    resize(760, 420);
}

void StationQsosDialog::refresh() {
    const int b = capture_.band();
    try {
        SharedStore store(db_);
        const auto stamp = store.remoteStamp(b);
        if (b == band_ && stamp == stamp_)
            return;
        const std::string keep = selectedUid();
        qsos_ = store.remoteQsos(b);
        shown_.clear();
        band_ = b;
        stamp_ = stamp;
        setWindowTitle(q(texts_(kTitle)) + " " + q(std::string(band(b).boxText)));
        fill(keep);
    } catch (const std::exception& e) {
        // The worker may hold the file for a moment: the next look reads again.
        state_->setText(q(texts_(kNotRead)) + " " + q(e.what()));
    }
}

std::string StationQsosDialog::selectedUid() const {
    const SharedQso* s = selected();
    return s ? s->uid : std::string();
}

void StationQsosDialog::fill(const std::string& keep) {
    const QString typed = filter_->text().trimmed().toUpper();
    shown_.clear();
    for (std::size_t i = 0; i < qsos_.size(); ++i)
        if (typed.isEmpty() || q(qsos_[i].row.call).toUpper().contains(typed))
            shown_.push_back(i);
    table_->setRowCount(static_cast<int>(shown_.size()));
    int current = shown_.empty() ? -1 : 0;
    for (int r = 0; r < static_cast<int>(shown_.size()); ++r) {
        const SharedQso& s = qsos_[shown_[static_cast<std::size_t>(r)]];
        const QsoRow& x = s.row;
        const QStringList cells{q(s.position),
                                q(entry::formatGridSerial(x.qsoNr)),
                                q(x.call),
                                q(x.locator),
                                q(x.datTime.dateIso()),
                                q(x.datTime.timeHM()),
                                q(x.rstGeg),
                                q(x.rstErh),
                                QString::number(x.qrb),
                                x.errQso ? q(texts_(kDeleted)) : QString()};
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = table_->item(r, c);
            if (!item)
                table_->setItem(r, c, item = new QTableWidgetItem);
            item->setText(cells[c]);
            // Deleted as in the log grid: the call readable, the rest red.
            item->setBackground(x.errQso && c != 2 ? QBrush(QColor(255, 0, 0)) : QBrush());
        }
        if (s.uid == keep)
            current = r;
    }
    if (current >= 0)
        table_->selectRow(current);
}

const SharedQso* StationQsosDialog::selected() const {
    const int r = table_->currentRow();
    if (r < 0 || r >= static_cast<int>(shown_.size()))
        return nullptr;
    return &qsos_[shown_[static_cast<std::size_t>(r)]];
}

void StationQsosDialog::edit() {
    const SharedQso* s = selected();
    if (!s)
        return;
    editing_ = s->uid;
    line_->load(table_->currentRow(), remoteEditRow(s->row),
                q(entry::formatGridSerial(s->row.qsoNr)));
    line_->show();
    state_->setText(q(texts_(kEditHint)));
    focusField(line_->call(), true);
}

void StationQsosDialog::leaveEdit() {
    editing_.clear();
    line_->forget();
    line_->hide();
    table_->setFocus();
}

void StationQsosDialog::storeEdit() {
    if (editing_.empty())
        return;
    Status done = okStatus();
    try {
        SharedStore store(db_);
        done = RemoteCorrection(store, capture_.config(), dialogs_, texts_)
                   .correct(editing_, line_->editRow());
    } catch (const std::exception& e) {
        done = refuse(kNotStored, {}, e.what());
    }
    if (!done) {
        report(done.failure());
        return;
    }
    leaveEdit();
    stored();
}

void StationQsosDialog::toggleDeleted() {
    const SharedQso* s = selected();
    if (!s)
        return;
    Result<bool> done = false;
    try {
        SharedStore store(db_);
        done = RemoteCorrection(store, capture_.config(), dialogs_, texts_).toggleDeleted(s->uid);
    } catch (const std::exception& e) {
        done = refuse(kNotStored, {}, e.what());
    }
    if (!done)
        report(done.failure());
    else if (*done)
        stored();
}

void StationQsosDialog::report(const Failure& f) {
    QString text = q(texts_(f.text));
    if (!f.detail.empty())
        text += " " + q(f.detail);
    state_->setText(text);
    beeper_.beep();
    if (!f.field.empty() && line_->isVisible())
        if (QLineEdit* field = line_->field(f.field.c_str()))
            focusField(field, true);
}

void StationQsosDialog::stored() {
    state_->setText(q(texts_(kStored)));
    if (changed_)
        changed_();
    refresh();
}

bool StationQsosDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* e = static_cast<QKeyEvent*>(event);
    if (watched == table_) {
        if (isEnter(e)) {
            edit();
            return true;
        }
        if (plain(e, Qt::Key_Delete)) {
            toggleDeleted();
            return true;
        }
        if (plain(e, Qt::Key_Escape)) {
            reject();
            return true;
        }
        if (plain(e, Qt::Key_Backspace)) {
            filter_->backspace();
            return true;
        }
        if (const auto c = typedChar(e); c && *c != ' ') {
            filter_->insert(c->toUpper());
            return true;
        }
        return false;
    }
    auto* field = qobject_cast<QWidget*>(watched);
    if (field && line_->isAncestorOf(field)) {
        if (plain(e, Qt::Key_Escape)) {
            leaveEdit();
            return true;
        }
        return line_->fieldKey(field, e);
    }
    return QDialog::eventFilter(watched, event);
}

void openStationQsos(QWidget& parent, sql::Db& db, Capture& capture, const Texts& texts,
                     std::function<void()> changed) {
    if (auto* open = parent.findChild<StationQsosDialog*>("StationQsos")) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto* dialog = new StationQsosDialog(db, capture, texts, std::move(changed), &parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace orv::ui
