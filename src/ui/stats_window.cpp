#include "ui/stats_window.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/reference/country_list.h"
#include "core/submission/export_file.h"
#include "core/submission/log_statistics.h"
#include "core/util/file_io.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The two states of a row's mark.
const QString kMarked = QString::fromUtf8("\u2611");
const QString kUnmarked = QString::fromUtf8("\u2610");

} // namespace

StatsWindow::StatsWindow(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                         QWidget* parent)
    : QDialog(parent), paths_(paths), texts_(texts), dialogs_(dialogs) {
    setObjectName("Form14");
    setWindowTitle(q(texts_(284)));
    try {
        auto list = std::make_unique<CountryList>(CountryList::load(paths_.countryDbPath()));
        if (!list->empty())
            countries_ = std::move(list);
    } catch (const std::exception&) {
        countries_.reset();
    }

    auto* top = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    grid_ = new QTableWidget(this);
    grid_->setObjectName("MSFlexGrid1");
    grid_->setColumnCount(2);
    grid_->setHorizontalHeaderLabels({QString(), q(texts_(29))});
    grid_->verticalHeader()->hide();
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionMode(QAbstractItemView::NoSelection);
    grid_->horizontalHeader()->setStretchLastSection(true);
    grid_->setColumnWidth(0, 28);
    connect(grid_, &QTableWidget::cellClicked, this, [this](int row, int) { toggle(row); });
    left->addWidget(grid_, 1);
    auto button = [&](const char* name, const QString& caption, auto slot) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        left->addWidget(b);
    };
    button("Command1", q(texts_(286)), [this] { chooseFolder(); });
    button("Command2", q(texts_(284)), [this] { run(); });
    button("Command3", q(texts_(289)), [this] { openReport(); });
    button("Command4", q(texts_(290)), [this] { saveReport(); });
    top->addLayout(left);

    text_ = new QPlainTextEdit(this);
    text_->setObjectName("Text2");
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    top->addWidget(text_, 1);
    resize(900, 600);

    listFolder(paths_.logsPath());
}

StatsWindow::~StatsWindow() = default;

void StatsWindow::listFolder(const std::filesystem::path& folder) {
    folder_ = folder;
    logs_ = listStatisticLogs(folder);
    marks_.assign(logs_.size(), false);
    grid_->setRowCount(static_cast<int>(logs_.size()));
    for (int r = 0; r < static_cast<int>(logs_.size()); ++r) {
        auto* mark = new QTableWidgetItem(kUnmarked);
        mark->setTextAlignment(Qt::AlignCenter);
        grid_->setItem(r, 0, mark);
        grid_->setItem(r, 1, new QTableWidgetItem(q(logs_[static_cast<std::size_t>(r)])));
    }
}

void StatsWindow::toggle(int row) {
    if (row < 0 || row >= static_cast<int>(marks_.size()))
        return;
    const auto r = static_cast<std::size_t>(row);
    marks_[r] = !marks_[r];
    grid_->item(row, 0)->setText(marks_[r] ? kMarked : kUnmarked);
}

bool StatsWindow::marked(int row) const {
    return row >= 0 && row < static_cast<int>(marks_.size()) &&
           marks_[static_cast<std::size_t>(row)];
}

std::vector<std::string> StatsWindow::markedLogs() const {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < logs_.size(); ++i)
        if (marks_[i])
            out.push_back(logs_[i]);
    return out;
}

QString StatsWindow::report() const {
    return text_->toPlainText();
}

void StatsWindow::chooseFolder() {
    const auto folder = SubmissionHooks::chooseFolder(this, q(texts_(286)), folder_);
    if (!folder.empty())
        listFolder(folder);
}

void StatsWindow::run() {
    const auto names = markedLogs();
    if (names.empty())
        return;
    try {
        const Result<LogStatistics> s = computeStatistics(folder_, names, countries_.get());
        if (!s) {
            const Failure& f = s.failure();
            dialogs_.inform(texts_(f.text) + (f.detail.empty() ? "" : "\n" + f.detail),
                            Icon::Critical);
            return;
        }
        text_->setPlainText(q(statisticsReport(*s, texts_)));
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

void StatsWindow::openReport() {
    const auto file = SubmissionHooks::openFile(this, q(texts_(289)), "*.txt", folder_);
    if (file.empty())
        return;
    try {
        text_->setPlainText(q(text::decodeLegacy(fileio::readAll(file))));
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

void StatsWindow::saveReport() {
    const auto chosen = SubmissionHooks::saveFile(this, q(texts_(290)), "*.txt", folder_);
    if (chosen.empty())
        return;
    const auto file = forceExtension(chosen, ".TXT");
    try {
        fileio::writeAtomic(file, text_->toPlainText().toStdString());
        dialogs_.inform(savedMessage(texts_, file), Icon::Information);
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

} // namespace orv::ui
