#include "ui/cw_memory_panel.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "core/i18n/texts.h"
#include "core/keying/cw_macros.h"
#include "core/keying/cw_settings.h"
#include "core/settings/settings.h"
#include "core/util/text.h"
#include "ui/captions.h"
#include "ui/cw_input.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

void showMacroError(Dialogs& dialogs, const Texts& texts, QLineEdit* box, int start, int length) {
    dialogs.inform(texts(350), Icon::Critical);
    box->setFocus();
    box->setSelection(start, length);
}

CwMemoryPanel::CwMemoryPanel(const Texts& texts, Settings& settings, Dialogs& dialogs,
                             QWidget* parent)
    : QGroupBox(parent), texts_(texts), settings_(settings), dialogs_(dialogs) {
    setObjectName("Frame2");
    auto* grid = new QGridLayout(this);
    fOn_ = new QCheckBox(this);
    fOn_->setObjectName("Check1");
    captionFromRow(*fOn_, 318, texts);
    fText_ = new QLineEdit(this);
    fText_->setObjectName("Text1");
    editor_ = new CwInput("Combo1", true, texts, this);
    macros_ = new QListWidget(this);
    macros_->setObjectName("List1");
    fillMacros();
    connect(macros_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        editor_->insertMacro(item->data(Qt::UserRole).toInt());
    });
    auto* save = new QPushButton(this);
    save->setObjectName("Command4");
    captionFromRow(*save, 316, texts);
    auto* cancel = new QPushButton(this);
    cancel->setObjectName("Command3");
    captionFromRow(*cancel, 11, texts, CaptionPart::PlainText);
    auto* preview = new QPushButton(this);
    preview->setObjectName("Command5");
    captionFromRow(*preview, 352, texts);
    connect(save, &QPushButton::clicked, this, [this] { this->save(); });
    connect(cancel, &QPushButton::clicked, this, [this] {
        if (onClosed)
            onClosed();
    });
    connect(preview, &QPushButton::clicked, this, [this] {
        if (onPreview)
            onPreview(editor_->text());
    });
    grid->addWidget(fOn_, 0, 0, 1, 2);
    auto label = [&](int row) {
        auto* l = new QLabel(this);
        captionFromRow(*l, row, texts);
        return l;
    };
    grid->addWidget(label(319), 1, 0);
    grid->addWidget(fText_, 1, 1);
    grid->addWidget(label(320), 2, 0);
    grid->addWidget(editor_, 2, 1);
    grid->addWidget(label(321), 3, 0);
    grid->addWidget(macros_, 3, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(preview);
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 4, 0, 1, 2);
}

void CwMemoryPanel::fillMacros() {
    macros_->clear();
    for (int i = 0; i < static_cast<int>(keying::kMacros.size()); ++i) {
        auto* item = new QListWidgetItem(
            q(texts_(keying::kMacros[static_cast<std::size_t>(i)].textRow)), macros_);
        item->setData(Qt::UserRole, i);
    }
}

void CwMemoryPanel::changeEvent(QEvent* e) {
    if (e->type() == QEvent::LanguageChange) {
        fillMacros();
        if (slot_ >= 0)
            setTitle(q(texts_(317)) + QString::number(slot_ + 1));
    }
    QGroupBox::changeEvent(e);
}

void CwMemoryPanel::openSlot(int k) {
    slot_ = k;
    setTitle(q(texts_(317)) + QString::number(k + 1));
    fOn_->setChecked(settings_.get(keys::FOn(k)) != 0);
    const std::string caption = settings_.get(keys::FText(k));
    fText_->setText(caption.empty() ? q(texts_(309) + " " + std::to_string(k + 1)) : q(caption));
    editor_->setText(q(settings_.get(keying::CWTextKey(k))));
    editor_->setCursorPosition(0);
    show();
    fOn_->setFocus();
}

bool CwMemoryPanel::save() {
    if (!editor_->text().isEmpty()) {
        const auto check = keying::checkMacros(editor_->text().toStdString());
        if (!check.ok) {
            showMacroError(dialogs_, texts_, editor_, check.selStart, check.selLength);
            return false;
        }
        editor_->setText(q(check.text));
    }
    settings_.set(keying::CWTextKey(slot_), editor_->text().toStdString());
    settings_.set(keys::FOn(slot_), fOn_->isChecked() ? 1 : 0);
    settings_.set(keys::FText(slot_), text::trim(fText_->text().toStdString()));
    if (onSaved)
        onSaved(slot_);
    if (onClosed)
        onClosed();
    return true;
}

} // namespace orv::ui
