#include "ui/calldb_editor.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "core/i18n/texts.h"
#include "core/settings/ini_file.h"
#include "core/util/ports.h"
#include "core/util/text.h"

namespace orv::ui {
namespace {

constexpr const char* kEditListSection = "QBDatEditList";

QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// Menu captions carry "&" for their shortcut; a button keeps it, a title not.
QString plain(const std::string& s) {
    return q(s).remove('&');
}

std::string noteLine(const CallListLine& n) {
    return n.locator.empty() ? n.call : n.call + " " + n.locator;
}

} // namespace

std::filesystem::path editListPath(const AppPaths& paths) {
    return paths.appPath / "QBDatEditList.ini";
}

std::vector<CallListLine> editorNotes(const AppPaths& paths) {
    std::vector<CallListLine> out;
    const IniFile ini(editListPath(paths));
    if (!ini.exists())
        return out;
    for (const std::string& line : ini.readSection(kEditListSection)) {
        // A line that is not a call list line is passed over: the file is
        // a note pad, and one bad line must not hide the others.
        const auto parsed = parseCallList(line);
        if (parsed && !parsed->empty())
            out.push_back(parsed->front());
    }
    return out;
}

void noteForEditor(const AppPaths& paths, const std::string& call, const std::string& locator) {
    const CallListLine note{text::upper(text::trim(call)), text::upper(text::trim(locator))};
    if (note.call.empty())
        return;
    auto notes = editorNotes(paths);
    for (const auto& n : notes)
        if (n.call == note.call && n.locator == note.locator)
            return;
    notes.push_back(note);
    IniFile ini(editListPath(paths));
    if (!ini.exists())
        ini.create();
    std::vector<std::string> lines;
    for (const auto& n : notes)
        lines.push_back(noteLine(n));
    ini.writeSection(kEditListSection, lines);
}

void dropEditorNote(const AppPaths& paths, const CallListLine& note) {
    auto notes = editorNotes(paths);
    const auto before = notes.size();
    std::erase_if(notes, [&](const CallListLine& n) {
        return n.call == note.call && n.locator == note.locator;
    });
    if (notes.size() == before)
        return;
    std::vector<std::string> lines;
    for (const auto& n : notes)
        lines.push_back(noteLine(n));
    IniFile ini(editListPath(paths));
    if (lines.empty())
        ini.deleteSection(kEditListSection);
    else
        ini.writeSection(kEditListSection, lines);
}

// --- CallDbModel ----------------------------------------------------------

void CallDbModel::setRecords(std::vector<CallRecord> records) {
    beginResetModel();
    records_ = std::move(records);
    refilter();
    endResetModel();
}

void CallDbModel::setFilter(const QString& callPart) {
    beginResetModel();
    filter_ = text::upper(text::trim(callPart.toStdString()));
    refilter();
    endResetModel();
}

void CallDbModel::refilter() {
    shown_.clear();
    for (std::size_t i = 0; i < records_.size(); ++i)
        if (filter_.empty() || records_[i].Call.find(filter_) != std::string::npos)
            shown_.push_back(i);
}

const CallRecord* CallDbModel::recordAt(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= shown_.size())
        return nullptr;
    return &records_[shown_[static_cast<std::size_t>(row)]];
}

int CallDbModel::rowOf(std::int64_t rowid) const {
    for (std::size_t i = 0; i < shown_.size(); ++i)
        if (records_[shown_[i]].rowid == rowid)
            return static_cast<int>(i);
    return -1;
}

int CallDbModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int CallDbModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant CallDbModel::data(const QModelIndex& index, int role) const {
    const CallRecord* r = recordAt(index.row());
    if (!r)
        return {};
    const int c = index.column();
    if (role == Qt::TextAlignmentRole && c >= 2 && c < 2 + kBandCount)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    if (c == 0)
        return q(r->Call);
    if (c == 1)
        return q(r->Locator);
    if (c < 2 + kBandCount)
        return r->counters[static_cast<std::size_t>(c - 2)];
    return r->LastDate ? q(r->LastDate->toStorage()) : QString();
}

QVariant CallDbModel::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, o, role);
    if (section == 0)
        return q(texts_(151));
    if (section == 1)
        return q(texts_(155));
    if (section < 2 + kBandCount)
        return q(kBands[static_cast<std::size_t>(section - 2)].caption);
    return q(texts_(174));
}

// --- CallDbEditor ---------------------------------------------------------

CallDbEditor::CallDbEditor(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                           QWidget* parent)
    : QDialog(parent), paths_(paths), texts_(texts), dialogs_(dialogs),
      store_(std::make_unique<CallDbStore>(paths.callDbPath())) {
    setObjectName("FormQBDatEdit");
    setWindowTitle(plain(texts_(89)));
    auto* v = new QVBoxLayout(this);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(q(texts_(151)), this));
    filter_ = new QLineEdit(this);
    filter_->setObjectName("QBDatFilter");
    top->addWidget(filter_, 1);
    v->addLayout(top);

    auto* middle = new QHBoxLayout;
    model_ = new CallDbModel(texts_, this);
    grid_ = new QTableView(this);
    grid_->setObjectName("QBDatGrid");
    grid_->setModel(model_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->verticalHeader()->setVisible(false);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    middle->addWidget(grid_, 1);
    notes_ = new QListWidget(this);
    notes_->setObjectName("QBDatEditList");
    notes_->setMaximumWidth(notes_->fontMetrics().horizontalAdvance(QString(24, 'W')));
    middle->addWidget(notes_);
    v->addLayout(middle, 1);

    // The fields of one row.
    auto* fields = new QGridLayout;
    auto addField = [&](int col, const QString& caption, QWidget* w) {
        fields->addWidget(new QLabel(caption, this), 0, col);
        fields->addWidget(w, 1, col);
    };
    call_ = new QLineEdit(this);
    call_->setObjectName("EditCall");
    call_->setMaxLength(static_cast<int>(kCallSize));
    addField(0, q(texts_(151)), call_);
    locator_ = new QLineEdit(this);
    locator_->setObjectName("EditLocator");
    locator_->setMaxLength(static_cast<int>(kLocatorSize));
    addField(1, q(texts_(155)), locator_);
    for (int b = 0; b < kBandCount; ++b) {
        auto* s = new QSpinBox(this);
        s->setObjectName(q("Edit" + std::string(counterField(b))));
        s->setRange(0, 999999);
        counters_[static_cast<std::size_t>(b)] = s;
        addField(2 + b, q(kBands[static_cast<std::size_t>(b)].caption), s);
    }
    lastDate_ = new QLineEdit(this);
    lastDate_->setObjectName("EditLastDate");
    lastDate_->setPlaceholderText(q(texts_(510)));
    addField(2 + kBandCount, q(texts_(174)), lastDate_);
    v->addLayout(fields);

    status_ = new QLabel(this);
    status_->setObjectName("QBDatStatus");
    status_->setStyleSheet("color: #b00000; font-weight: bold;");
    v->addWidget(status_);

    auto* buttons = new QHBoxLayout;
    auto button = [&](const char* name, int textNr, auto fn) {
        auto* b = new QPushButton(q(texts_(textNr)), this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, fn);
        buttons->addWidget(b);
        return b;
    };
    button("CmdAdd", 72, [this] { addRow(); });
    button("CmdChange", 362, [this] { changeRow(); });
    button("CmdDelete", 357, [this] { deleteRow(); });
    buttons->addStretch(1);
    button("CmdClose", 279, [this] { accept(); });
    v->addLayout(buttons);

    connect(filter_, &QLineEdit::textChanged, model_, &CallDbModel::setFilter);
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& i) { showRow(i.row()); });
    connect(notes_, &QListWidget::currentRowChanged, this, &CallDbEditor::takeNote);

    reloadRows(0);
    fillNotes();
    resize(1100, 600);
}

CallDbEditor::~CallDbEditor() = default;

void CallDbEditor::reloadRows(std::int64_t select) {
    model_->setRecords(store_->all());
    const int row = model_->rowOf(select);
    if (row >= 0)
        grid_->selectRow(row);
}

void CallDbEditor::fillNotes() {
    notes_->blockSignals(true);
    notes_->clear();
    for (const auto& n : editorNotes(paths_))
        notes_->addItem(q(noteLine(n)));
    notes_->blockSignals(false);
}

void CallDbEditor::showRow(int viewRow) {
    const CallRecord* r = model_->recordAt(viewRow);
    if (!r)
        return;
    rowid_ = r->rowid;
    call_->setText(q(r->Call));
    locator_->setText(q(r->Locator));
    for (std::size_t b = 0; b < counters_.size(); ++b)
        counters_[b]->setValue(r->counters[b]);
    lastDate_->setText(r->LastDate ? q(r->LastDate->toStorage()) : QString());
    status_->clear();
}

void CallDbEditor::takeNote(int noteRow) {
    const auto notes = editorNotes(paths_);
    if (noteRow < 0 || static_cast<std::size_t>(noteRow) >= notes.size())
        return;
    const CallListLine& n = notes[static_cast<std::size_t>(noteRow)];
    // The grid narrows to the call, and the first row of the same call and
    // locator is the one to work on; a new call starts with empty counters.
    filter_->setText(q(n.call));
    for (int r = 0; r < model_->rowCount(); ++r) {
        const CallRecord* rec = model_->recordAt(r);
        if (rec->Call == n.call && rec->Locator == n.locator) {
            grid_->selectRow(r);
            showRow(r);
            return;
        }
    }
    rowid_ = 0;
    call_->setText(q(n.call));
    locator_->setText(q(n.locator));
    for (QSpinBox* s : counters_)
        s->setValue(0);
    lastDate_->clear();
}

std::optional<CallRecord> CallDbEditor::fieldsToRecord() {
    CallRecord r;
    r.rowid = rowid_;
    r.Call = call_->text().toStdString();
    r.Locator = locator_->text().toStdString();
    for (std::size_t b = 0; b < counters_.size(); ++b)
        r.counters[b] = counters_[b]->value();
    const std::string date = text::trim(lastDate_->text().toStdString());
    if (!date.empty()) {
        r.LastDate = DateTime::fromStorage(date);
        if (!r.LastDate) {
            refuse(Failure{13, "LastDate", date});
            return std::nullopt;
        }
    }
    return r;
}

void CallDbEditor::refuse(const Failure& f) {
    status_->setText(q(texts_(f.text)));
    QWidget* focus = f.field == "Locator"    ? static_cast<QWidget*>(locator_)
                     : f.field == "LastDate" ? static_cast<QWidget*>(lastDate_)
                                             : static_cast<QWidget*>(call_);
    focus->setFocus(Qt::OtherFocusReason);
}

void CallDbEditor::addRow() {
    auto r = fieldsToRecord();
    if (!r)
        return;
    const auto added = store_->add(*r);
    if (!added) {
        refuse(added.failure());
        return;
    }
    changed_ = true;
    dropEditorNote(paths_, {text::upper(text::trim(r->Call)), text::upper(text::trim(r->Locator))});
    fillNotes();
    status_->clear();
    reloadRows(*added);
}

void CallDbEditor::changeRow() {
    if (rowid_ == 0) {
        refuse(Failure{258, "Call", {}});
        return;
    }
    auto r = fieldsToRecord();
    if (!r)
        return;
    const auto done = store_->change(*r);
    if (!done) {
        refuse(done.failure());
        return;
    }
    changed_ = true;
    dropEditorNote(paths_, {text::upper(text::trim(r->Call)), text::upper(text::trim(r->Locator))});
    fillNotes();
    status_->clear();
    reloadRows(r->rowid);
}

void CallDbEditor::deleteRow() {
    if (rowid_ == 0)
        return;
    if (dialogs_.ask(texts_(179), Buttons::YesNo, Icon::Question, Answer::No) != Answer::Yes)
        return;
    const auto done = store_->remove(rowid_);
    if (!done) {
        refuse(done.failure());
        return;
    }
    changed_ = true;
    rowid_ = 0;
    call_->clear();
    locator_->clear();
    for (QSpinBox* s : counters_)
        s->setValue(0);
    lastDate_->clear();
    reloadRows(0);
}

} // namespace orv::ui
