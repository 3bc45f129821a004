#include "ui/log_panels.h"

#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

LogPanels::LogPanels(QWidget* parent) : QWidget(parent) {
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);

    // The earlier QSO of a duplicate, with the key that marks it deleted.
    auto* dup = new QFrame(this);
    duplicate_ = dup;
    dup->setObjectName("Picture11");
    dup->setFrameShape(QFrame::StyledPanel);
    dup->setStyleSheet("#Picture11 { background: #ffe0e0; }");
    auto* dh = new QHBoxLayout(dup);
    for (int i = 0; i < 10; ++i) {
        QLabel* l = makeLabel(QString("Dup%1").arg(i).toLatin1().constData(), dup);
        dupLabels_[static_cast<std::size_t>(i)] = l;
        dh->addWidget(l, i == 9 ? 1 : 0);
    }
    auto* resolve = new QPushButton("F11", dup);
    resolve->setObjectName("Command1");
    connect(resolve, &QPushButton::clicked, this, &LogPanels::resolveDuplicate);
    resolve->setEnabled(false);
    dh->addWidget(resolve);
    dup->hide();
    v->addWidget(dup);

    workedElsewhere_ = new QGroupBox(this);
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

    comparison_ = new QGroupBox(this);
    comparison_->setObjectName("Frame4");
    auto* cv = new QVBoxLayout(comparison_);
    comparisonGrid_ = new QTableWidget(0, 3, comparison_);
    comparisonGrid_->setObjectName("MSFlexGrid3");
    comparisonGrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    cv->addWidget(comparisonGrid_);
    auto* ch = new QHBoxLayout;
    // `Command4` only reports that nothing was found; it is never pressed.
    for (const char* name : {"Command5", "Command6", "Command4", "Command2"}) {
        auto* b = new QPushButton(comparison_);
        b->setObjectName(name);
        b->setEnabled(false);
        ch->addWidget(b);
    }
    cv->addLayout(ch);
    auto* close = comparison_->findChild<QPushButton*>("Command2");
    close->setEnabled(true);
    connect(close, &QPushButton::clicked, comparison_, &QWidget::hide);
    comparison_->hide();
    v->addWidget(comparison_);
}

void LogPanels::showDuplicate(const DuplicatePanel& panel) {
    for (std::size_t i = 0; i < panel.dup.size(); ++i)
        dupLabels_[i]->setText(q(panel.dup[i]));
    duplicate_->findChild<QPushButton*>("Command1")->setEnabled(true);
    duplicate_->show();
}

void LogPanels::hideDuplicate() {
    duplicate_->hide();
}

bool LogPanels::duplicateShown() const {
    return !duplicate_->isHidden();
}

void LogPanels::showWorkedElsewhere(const std::vector<WorkedOnBand>& rows) {
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

void LogPanels::hideWorkedElsewhere() {
    workedElsewhere_->hide();
}

bool LogPanels::workedElsewhereShown() const {
    return !workedElsewhere_->isHidden();
}

bool LogPanels::comparisonShown() const {
    return !comparison_->isHidden();
}

void LogPanels::hideComparison() {
    comparison_->hide();
}

void LogPanels::Grid2Set(const Texts& texts) {
    const int heads[] = {173, 151, 155, 152, 153, -1, 156, 150};
    const int twips[] = {700, 1300, 1300, 580, 580, 900, 700, 700};
    QStringList labels;
    for (int h : heads)
        labels << (h < 0 ? q(texts(152)) + q(texts(153)) : q(texts(h)));
    workedGrid_->setColumnCount(8);
    workedGrid_->setHorizontalHeaderLabels(labels);
    for (int c = 0; c < 8; ++c)
        workedGrid_->setColumnWidth(c, twipsToPixels(workedGrid_, twips[c]));
}

} // namespace orv::ui
