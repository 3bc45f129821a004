#include "ui/options/rig_page.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/rig/rig_settings.h"
#include "ui/options/rig_device_fields.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

RigPage::RigPage(const Texts& texts, std::vector<platform::HamlibModel> models, QWidget* parent)
    : QWidget(parent), title_(q(texts(1221))) {
    setObjectName("RigPage");
    fields_ = new RigDeviceFields(texts, 1223, std::move(models), this);
    auto* v = new QVBoxLayout(this);
    v->addWidget(fields_);
    v->addWidget(new QLabel(q(texts(1227)), this));
    auto* grid = new QGridLayout;
    for (int b = 0; b < kBandCount; ++b) {
        auto* edit = new QLineEdit(this);
        edit->setObjectName(QString("Offset%1").arg(q(std::string(band(b).boxText))));
        grid->addWidget(new QLabel(q(std::string(band(b).caption)), this), b / 5, (b % 5) * 2);
        grid->addWidget(edit, b / 5, (b % 5) * 2 + 1);
        offsets_[static_cast<std::size_t>(b)] = edit;
    }
    v->addLayout(grid);
}

RigPage::RigPage(const Texts& texts, QWidget* parent)
    : RigPage(texts, platform::hamlibRigModels(), parent) {}

void RigPage::load(const Settings& settings) {
    fields_->setValues(rig::readRigSettings(settings));
    const rig::TransverterOffsets o = rig::readTransverterOffsets(settings);
    for (int b = 0; b < kBandCount; ++b) {
        const double v = o[static_cast<std::size_t>(b)];
        offsets_[static_cast<std::size_t>(b)]->setText(v == 0.0 ? QString() : QString::number(v));
    }
}

std::optional<Failure> RigPage::validate() const {
    if (auto f = fields_->validate())
        return f;
    for (QLineEdit* edit : offsets_) {
        const QString t = edit->text().trimmed();
        if (!t.isEmpty() && !rig::parseOffsetMHz(t.toStdString()))
            return refuse(1230, edit->objectName().toStdString(), t.toStdString());
    }
    return std::nullopt;
}

void RigPage::save(Settings& settings) const {
    rig::writeRigSettings(settings, fields_->values());
    rig::TransverterOffsets o{};
    for (int b = 0; b < kBandCount; ++b)
        o[static_cast<std::size_t>(b)] =
            rig::parseOffsetMHz(offsets_[static_cast<std::size_t>(b)]->text().toStdString())
                .value_or(0.0);
    rig::writeTransverterOffsets(settings, o);
}

} // namespace orv::ui
