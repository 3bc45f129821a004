#include "ui/options/options_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/options/staged_settings.h"
#include "core/util/file_io.h"
#include "ui/options/audio_page.h"
#include "ui/options/backup_page.h"
#include "ui/options/contest_page.h"
#include "ui/options/cw_page.h"
#include "ui/options/dde_page.h"
#include "ui/options/general_page.h"
#include "ui/options/hamlib_pages.h"
#include "ui/options/list_page.h"
#include "ui/options/operator_page.h"
#include "ui/options/time_page.h"

namespace orv::ui {

OptionsDialog::OptionsDialog(OptionsContext ctx, const Settings& live,
                             std::optional<ContestData> openContest, QWidget* parent)
    : QDialog(parent), ctx_(std::move(ctx)) {
    setObjectName("Form4");
    setWindowTitle(ctx_.plain(950));
    setModal(true);
    list_ = new QListWidget(this);
    list_->setObjectName("PageList");
    stack_ = new QStackedWidget(this);
    cw_ = new CwPage(ctx_, stack_);
    operators_ = new OperatorPage(
        ctx_, [this] { return cw_->wpm(); }, stack_);
    contest_ = new ContestPage(ctx_, std::move(openContest), stack_);
    // The order of the list is the order of the checks.
    pages_ = {new GeneralPage(ctx_, stack_),
              cw_,
              operators_,
              new AudioPage(ctx_, stack_),
              new BackupPage(ctx_, stack_),
              new TimePage(ctx_, stack_),
              makeModePage(ctx_, stack_),
              makePropagationPage(ctx_, stack_),
              new DdePage(ctx_, stack_),
              makeRotatorOptionsPage(ctx_, stack_),
              makeRigOptionsPage(ctx_, stack_),
              contest_};
    for (OptionsPage* p : pages_) {
        p->load(live);
        stack_->addWidget(p);
        list_->addItem(p->title());
    }
    list_->setFixedWidth(list_->sizeHintForColumn(0) + 24);
    connect(list_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
    connect(contest_, &ContestPage::applyToLog, this, &OptionsDialog::confirmContest);
    connect(contest_, &ContestPage::cancelPressed, this, &QDialog::reject);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(ctx_.plain(961), QDialogButtonBox::AcceptRole);
    ok->setObjectName("OK");
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(ctx_.plain(364), QDialogButtonBox::RejectRole);
    cancel->setObjectName("Abbrechen");
    connect(ok, &QPushButton::clicked, this, &OptionsDialog::confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(list_);
    top->addWidget(stack_, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addWidget(buttons);
    showPage(0);
    resize(820, 560);
}

OptionsDialog::~OptionsDialog() {
    if (!finished_)
        for (OptionsPage* p : pages_)
            p->cancelled();
}

void OptionsDialog::showPage(int index) {
    list_->setCurrentRow(index);
}

int OptionsDialog::currentPage() const {
    return stack_->currentIndex();
}

bool OptionsDialog::refused(int page, const Failure& f) {
    showPage(page);
    ctx_.dialogs.inform(ctx_.texts(f.text), Icon::Warning);
    if (QWidget* w = pages_[page]->findChild<QWidget*>(QString::fromStdString(f.field)))
        w->setFocus();
    return false;
}

bool OptionsDialog::writeStaged(const std::function<void(Settings&)>& write) {
    try {
        options::StagedSettings staged(ctx_.paths.iniPath());
        write(staged.settings());
        staged.commit();
        return true;
    } catch (const fileio::FileError& e) {
        ctx_.dialogs.inform(ctx_.texts(970) + "\n" + e.what(), Icon::Critical);
    } catch (const std::filesystem::filesystem_error& e) {
        ctx_.dialogs.inform(ctx_.texts(970) + "\n" + e.what(), Icon::Critical);
    }
    return false;
}

bool OptionsDialog::confirm() {
    for (int i = 0; i < static_cast<int>(pages_.size()); ++i)
        if (const Status s = pages_[i]->validate(); !s)
            return refused(i, s.failure());
    if (!writeStaged([this](Settings& s) {
            for (OptionsPage* p : pages_)
                p->save(s);
        }))
        return false;
    finished_ = true;
    for (OptionsPage* p : pages_) {
        try {
            p->saved();
        } catch (const std::exception& e) {
            ctx_.dialogs.inform(ctx_.texts(10) + "\n" + e.what(), Icon::Critical);
        }
    }
    accept();
    return true;
}

bool OptionsDialog::confirmContest() {
    const auto contest = contest_->current();
    const int page = static_cast<int>(pages_.size()) - 1;
    if (!contest)
        return refused(page, contest.failure());
    if (!writeStaged([&](Settings& s) {
            contest_->save(s);
            SaveAConDat(s.file(), *contest);
        }))
        return false;
    applied_ = *contest;
    // The other pages are left as a cancel leaves them.
    for (OptionsPage* p : pages_)
        p->cancelled();
    finished_ = true;
    accept();
    return true;
}

void OptionsDialog::done(int result) {
    if (result == QDialog::Rejected && !finished_) {
        finished_ = true;
        for (OptionsPage* p : pages_)
            p->cancelled();
    }
    QDialog::done(result);
}

} // namespace orv::ui
