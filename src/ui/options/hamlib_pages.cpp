#include "ui/options/hamlib_pages.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/rig/rig_settings.h"
#include "ui/options/rig_device_fields.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

HamlibPage::HamlibPage(const Texts& texts, Device device, std::vector<platform::HamlibModel> models,
                       QWidget* parent)
    : QWidget(parent), device_(device) {
    const bool rig = device == Device::Rig;
    setObjectName(rig ? "RigPage" : "RotatorPage");
    fields_ = new RigDeviceFields(texts, rig ? 1223 : 1222, std::move(models), this);
    auto* v = new QVBoxLayout(this);
    v->addWidget(fields_);
    if (!rig)
        return;
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

HamlibPage::HamlibPage(const Texts& texts, Device device, QWidget* parent)
    : HamlibPage(texts, device,
                 device == Device::Rig ? platform::hamlibRigModels()
                                       : platform::hamlibRotatorModels(),
                 parent) {}

void HamlibPage::load(const Settings& settings) {
    if (device_ == Device::Rotator) {
        fields_->setValues(rig::readRotatorSettings(settings));
        return;
    }
    fields_->setValues(rig::readRigSettings(settings));
    const rig::TransverterOffsets o = rig::readTransverterOffsets(settings);
    for (int b = 0; b < kBandCount; ++b) {
        const double v = o[static_cast<std::size_t>(b)];
        offsets_[static_cast<std::size_t>(b)]->setText(v == 0.0 ? QString() : QString::number(v));
    }
}

std::optional<Failure> HamlibPage::validate() const {
    if (auto f = fields_->validate())
        return f;
    for (QLineEdit* edit : offsets_) {
        if (!edit)
            continue;
        const QString t = edit->text().trimmed();
        if (!t.isEmpty() && !rig::parseOffsetMHz(t.toStdString()))
            return refuse(1230, edit->objectName().toStdString(), t.toStdString());
    }
    return std::nullopt;
}

void HamlibPage::save(Settings& settings) const {
    if (device_ == Device::Rotator) {
        rig::writeRotatorSettings(settings, fields_->values());
        return;
    }
    rig::writeRigSettings(settings, fields_->values());
    rig::TransverterOffsets o{};
    for (int b = 0; b < kBandCount; ++b)
        o[static_cast<std::size_t>(b)] =
            rig::parseOffsetMHz(offsets_[static_cast<std::size_t>(b)]->text().toStdString())
                .value_or(0.0);
    rig::writeTransverterOffsets(settings, o);
}

namespace {

// The page inside the dialog's frame of pages.
class HamlibOptionsPage final : public OptionsPage {
public:
    HamlibOptionsPage(OptionsContext& ctx, HamlibPage::Device device, QWidget* parent)
        : OptionsPage(ctx, device == HamlibPage::Device::Rig ? "RigOptions" : "RotatorOptions",
                      device == HamlibPage::Device::Rig ? 1221 : 1220, parent),
          page_(new HamlibPage(ctx.texts, device, this)) {
        auto* v = new QVBoxLayout(this);
        v->setContentsMargins(0, 0, 0, 0);
        v->addWidget(page_);
    }
    void load(const Settings& s) override { page_->load(s); }
    Status validate() override {
        if (auto f = page_->validate())
            return *f;
        return okStatus();
    }
    void save(Settings& s) override { page_->save(s); }

private:
    HamlibPage* page_;
};

} // namespace

OptionsPage* makeRotatorOptionsPage(OptionsContext& ctx, QWidget* parent) {
    return new HamlibOptionsPage(ctx, HamlibPage::Device::Rotator, parent);
}

OptionsPage* makeRigOptionsPage(OptionsContext& ctx, QWidget* parent) {
    return new HamlibOptionsPage(ctx, HamlibPage::Device::Rig, parent);
}

} // namespace orv::ui
