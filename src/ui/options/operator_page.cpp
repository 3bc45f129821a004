#include "ui/options/operator_page.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <filesystem>

#include "core/util/file_io.h"

namespace orv::ui {
namespace {

const QString kVoiceFilter = "*.WAV;*.MP3;*.OGG (*.WAV *.wav *.MP3 *.mp3 *.OGG *.ogg);;*.* (*)";

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

} // namespace

OperatorPage::OperatorPage(OptionsContext& ctx, std::function<int()> speed, QWidget* parent)
    : OptionsPage(ctx, "Frame3", 953, parent), speed_(std::move(speed)) {
    auto* layout = new QVBoxLayout(this);
    std::vector<QPushButton*> b;
    voiceGrid_ = grid("MSFlexGrid1", {209, 250});
    layout->addWidget(voiceGrid_);
    layout->addWidget(buttons({{"Command29", 72},
                               {"Command26", 977},
                               {"Command25", 357},
                               {"Command27", 975},
                               {"Command28", 976}},
                              b));
    connect(b[0], &QPushButton::clicked, this, &OperatorPage::addOperator);
    connect(b[1], &QPushButton::clicked, this, &OperatorPage::changeFile);
    connect(b[2], &QPushButton::clicked, this, &OperatorPage::removeOperator);
    connect(b[3], &QPushButton::clicked, this, [this] { moveOperator(-1); });
    connect(b[4], &QPushButton::clicked, this, [this] { moveOperator(1); });
    cwGrid_ = grid("MSFlexGrid2", {209, 293, 294});
    layout->addWidget(cwGrid_);
    b.clear();
    layout->addWidget(buttons({{"Command32", 978}, {"Command31", 362}, {"Command30", 357}}, b));
    connect(b[0], &QPushButton::clicked, this, [this] { enterText(false); });
    connect(b[1], &QPushButton::clicked, this, [this] { enterText(true); });
    connect(b[2], &QPushButton::clicked, this, &OperatorPage::clearText);
    // The two grids show the same rows: a row chosen in one is chosen in both.
    connect(voiceGrid_, &QTableWidget::currentCellChanged, this,
            [this](int r) { cwGrid_->selectRow(r); });
    connect(cwGrid_, &QTableWidget::currentCellChanged, this,
            [this](int r) { voiceGrid_->selectRow(r); });
}

OperatorPage::~OperatorPage() = default;

QTableWidget* OperatorPage::grid(const char* name, std::initializer_list<int> titleRows) {
    auto* g = new QTableWidget(this);
    g->setObjectName(name);
    QStringList titles;
    for (int r : titleRows)
        titles << ctx_.plain(r);
    g->setColumnCount(titles.size());
    g->setHorizontalHeaderLabels(titles);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->horizontalHeader()->setStretchLastSection(true);
    return g;
}

QWidget* OperatorPage::buttons(std::initializer_list<std::pair<const char*, int>> list,
                               std::vector<QPushButton*>& out) {
    auto* w = new QWidget(this);
    auto* row = new QHBoxLayout(w);
    row->setContentsMargins(0, 0, 0, 0);
    for (const auto& [name, textRow] : list) {
        auto* b = new QPushButton(ctx_.t(textRow), w);
        b->setObjectName(name);
        row->addWidget(b);
        out.push_back(b);
    }
    row->addStretch();
    return w;
}

void OperatorPage::load(const Settings& s) {
    table_ = std::make_unique<options::OperatorTable>(s.opCalls(), ctx_.paths.cwAudioPath());
    renderedWpm_ = static_cast<int>(s.get(keys::CWWPM));
    show();
}

void OperatorPage::show() {
    const int keep = row();
    const auto& rows = table_->rows();
    voiceGrid_->setRowCount(static_cast<int>(rows.size()));
    cwGrid_->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const OpCall& o = rows[r];
        int c = 0;
        for (const std::string* v : {&o.call, &o.voiceFile})
            voiceGrid_->setItem(r, c++, new QTableWidgetItem(q(*v)));
        c = 0;
        for (const std::string* v : {&o.call, &o.beaconText, &o.toneFile})
            cwGrid_->setItem(r, c++, new QTableWidgetItem(q(*v)));
    }
    select(keep < table_->size() ? keep : table_->size() - 1);
}

int OperatorPage::row() const {
    return voiceGrid_->currentRow();
}

void OperatorPage::select(int r) {
    if (r >= 0)
        voiceGrid_->selectRow(r);
}

void OperatorPage::report(const Failure& f) {
    ctx_.dialogs.inform(ctx_.texts(f.text), Icon::Warning);
}

void OperatorPage::addOperator() {
    const auto call = ctx_.input(this, ctx_.t(251), QString());
    if (!call)
        return;
    const auto added = table_->add(call->toStdString());
    if (!added) {
        report(added.failure());
        return;
    }
    const QString file = ctx_.openFile(this, ctx_.plain(250), kVoiceFilter);
    if (!file.isEmpty())
        table_->setVoiceFile(*added, voiceName(file));
    show();
    select(*added);
}

std::string OperatorPage::voiceName(const QString& file) const {
    // A file in the folder `Audio` is kept by its name, as the beacon looks there.
    const std::filesystem::path p = file.toStdString();
    std::error_code ec;
    if (std::filesystem::equivalent(p.parent_path(), ctx_.paths.audioPath(), ec))
        return p.filename().string();
    return p.string();
}

void OperatorPage::changeFile() {
    const int r = row();
    if (r < 0)
        return;
    const QString file = ctx_.openFile(this, ctx_.plain(250), kVoiceFilter);
    if (file.isEmpty())
        return;
    table_->setVoiceFile(r, voiceName(file));
    show();
}

void OperatorPage::removeOperator() {
    const int r = row();
    if (r < 0 || ctx_.dialogs.ask(ctx_.texts(179), Buttons::YesNo, Icon::Question, Answer::No) !=
                     Answer::Yes)
        return;
    table_->remove(r);
    show();
}

void OperatorPage::moveOperator(int by) {
    const int r = row();
    if (table_->move(r, by)) {
        show();
        select(r + by);
    }
}

void OperatorPage::enterText(bool change) {
    const int r = row();
    if (r < 0)
        return;
    const OpCall& o = table_->rows()[r];
    const auto typed = ctx_.input(this, ctx_.t(296), change ? q(o.beaconText) : QString());
    if (!typed)
        return;
    try {
        const Status s = table_->setBeaconText(r, typed->toStdString(), speed_(), ctx_.clock.now());
        if (!s)
            report(s.failure());
    } catch (const fileio::FileError& e) {
        ctx_.dialogs.inform(ctx_.texts(10) + "\n" + e.what(), Icon::Critical);
    }
    show();
}

void OperatorPage::clearText() {
    const int r = row();
    if (r < 0 || ctx_.dialogs.ask(ctx_.texts(179), Buttons::YesNo, Icon::Question, Answer::No) !=
                     Answer::Yes)
        return;
    table_->clearBeaconText(r);
    show();
}

void OperatorPage::save(Settings& s) {
    const int wpm = speed_();
    if (wpm != renderedWpm_ && table_->textRows() > 0) {
        QProgressDialog progress(ctx_.t(971), QString(), 0, table_->textRows(), this);
        progress.setObjectName("RebuildProgress");
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(0);
        table_->rebuildAll(wpm, ctx_.clock.now(), [&](int done, int total) {
            progress.setValue(done);
            if (onRebuildStep)
                onRebuildStep(done, total);
        });
        show();
    }
    renderedWpm_ = wpm;
    s.setOpCalls(table_->rows());
}

void OperatorPage::saved() {
    table_->commit();
}

void OperatorPage::cancelled() {
    if (table_)
        table_->rollback();
}

} // namespace orv::ui
