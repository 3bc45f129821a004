#include "ui/options/rotator_page.h"

#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/rig/rig_settings.h"
#include "ui/options/rig_device_fields.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

RotatorPage::RotatorPage(const Texts& texts, std::vector<platform::HamlibModel> models,
                         QWidget* parent)
    : QWidget(parent), title_(q(texts(1220))) {
    setObjectName("RotatorPage");
    fields_ = new RigDeviceFields(texts, 1222, std::move(models), this);
    auto* v = new QVBoxLayout(this);
    v->addWidget(fields_);
}

RotatorPage::RotatorPage(const Texts& texts, QWidget* parent)
    : RotatorPage(texts, platform::hamlibRotatorModels(), parent) {}

void RotatorPage::load(const Settings& settings) {
    fields_->setValues(rig::readRotatorSettings(settings));
}

std::optional<Failure> RotatorPage::validate() const {
    return fields_->validate();
}

void RotatorPage::save(Settings& settings) const {
    rig::writeRotatorSettings(settings, fields_->values());
}

} // namespace orv::ui
