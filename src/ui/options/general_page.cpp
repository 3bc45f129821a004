#include "ui/options/general_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/options/option_rules.h"

namespace orv::ui {
namespace {

// The colours in the order of their buttons, with the rows of their labels.
struct ColourKey {
    const ColourSetting* key;
    const char* button;
    int row;
};
const std::array<ColourKey, 3> kColours{{
    {&keys::FarbeAktiv, "FarbeAktiv", 963},
    {&keys::FarbeNoEdit, "FarbeNoEdit", 964},
    {&keys::FarbeBereitsQSO, "FarbeBereitsQSO", 243},
}};

QColor toQ(Colour c) {
    return QColor(c.r, c.g, c.b);
}

Colour fromQ(const QColor& c) {
    return Colour{static_cast<std::uint8_t>(c.red()), static_cast<std::uint8_t>(c.green()),
                  static_cast<std::uint8_t>(c.blue())};
}

} // namespace

GeneralPage::GeneralPage(OptionsContext& ctx, QWidget* parent)
    : OptionsPage(ctx, "Frame1", 951, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* modes = new QGroupBox(ctx.plain(63), this);
    auto* modeForm = new QFormLayout(modes);
    flip_ = new QCheckBox(ctx.plain(59), modes);
    flip_->setObjectName("SSBCWFlip");
    flip_->setToolTip(ctx.t(60));
    modeForm->addRow(flip_);
    mode2_ = new QComboBox(modes);
    mode2_->setObjectName("Combo2");
    mode3_ = new QComboBox(modes);
    mode3_->setObjectName("Combo3");
    modeForm->addRow(ctx.plain(64), mode2_);
    modeForm->addRow(ctx.plain(65), mode3_);
    layout->addWidget(modes);

    auto* colours = new QGroupBox(ctx.plain(962), this);
    auto* colourForm = new QFormLayout(colours);
    for (int i = 0; i < 3; ++i) {
        colourButtons_[i] = new QPushButton(ctx.plain(965), colours);
        colourButtons_[i]->setObjectName(kColours[i].button);
        colourForm->addRow(ctx.plain(kColours[i].row), colourButtons_[i]);
        connect(colourButtons_[i], &QPushButton::clicked, this, [this, i] { pick(i); });
    }
    layout->addWidget(colours);

    antenneKomma_ = new QCheckBox(ctx.plain(966), this);
    antenneKomma_->setObjectName("Option3");
    layout->addWidget(antenneKomma_);
    auto* keyForm = new QFormLayout;
    fTaste_ = new QComboBox(this);
    fTaste_->setObjectName("FTaste");
    fTaste_->addItems({ctx.plain(236), ctx.plain(237), ctx.plain(238)});
    fTaste_->setToolTip(ctx.t(239));
    keyForm->addRow(ctx.plain(235), fTaste_);
    layout->addLayout(keyForm);
    layout->addStretch();
}

void GeneralPage::load(const Settings& s) {
    flip_->setChecked(s.get(keys::SSBCWFlip));
    // Read without the rebuild of an empty list, which would write.
    QStringList modes;
    for (const std::string& m : s.list(section::MODE))
        modes << QString::fromStdString(m);
    if (modes.isEmpty())
        modes = QStringList{"SSB", "CW", "FM"};
    for (auto [box, key] : {std::pair{mode2_, &keys::Mode2St}, std::pair{mode3_, &keys::Mode3St}}) {
        box->clear();
        box->addItems(modes);
        const QString current = QString::fromStdString(s.get(*key));
        const int at = box->findText(current, Qt::MatchFixedString);
        box->setCurrentIndex(at);
    }
    for (int i = 0; i < 3; ++i) {
        colours_[i] = toQ(s.get(*kColours[i].key));
        showColour(i);
    }
    antenneKomma_->setChecked(s.get(keys::AntenneKomma));
    const long long f = s.get(keys::FTaste);
    fTaste_->setCurrentIndex(f >= 0 && f <= 2 ? static_cast<int>(f) : 0);
}

Status GeneralPage::validate() {
    return options::checkKeyedModes(mode2_->currentText().toStdString(),
                                    mode3_->currentText().toStdString());
}

void GeneralPage::save(Settings& s) {
    s.set(keys::SSBCWFlip, flip_->isChecked());
    s.set(keys::Mode2St, mode2_->currentText().trimmed().toStdString());
    s.set(keys::Mode3St, mode3_->currentText().trimmed().toStdString());
    for (int i = 0; i < 3; ++i)
        s.set(*kColours[i].key, fromQ(colours_[i]));
    s.set(keys::AntenneKomma, antenneKomma_->isChecked());
    s.set(keys::FTaste, fTaste_->currentIndex());
}

void GeneralPage::pick(int i) {
    const QColor c = ctx_.chooseColour(this, colours_[i]);
    if (!c.isValid())
        return;
    colours_[i] = c;
    showColour(i);
}

void GeneralPage::showColour(int i) {
    colourButtons_[i]->setStyleSheet(
        QString("background-color: %1; color: %2")
            .arg(colours_[i].name(), colours_[i].lightness() < 128 ? "white" : "black"));
}

} // namespace orv::ui
