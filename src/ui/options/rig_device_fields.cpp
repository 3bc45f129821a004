#include "ui/options/rig_device_fields.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>

#include "core/i18n/texts.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

RigDeviceFields::RigDeviceFields(const Texts& texts, int useRow,
                                 std::vector<platform::HamlibModel> models, QWidget* parent)
    : QWidget(parent), models_(std::move(models)) {
    use_ = new QCheckBox(q(texts(useRow)), this);
    use_->setObjectName("DeviceEnabled");
    search_ = new QLineEdit(this);
    search_->setObjectName("ModelSearch");
    search_->setClearButtonEnabled(true);
    list_ = new QListWidget(this);
    list_->setObjectName("ModelList");
    for (const auto& m : models_) {
        auto* item = new QListWidgetItem(
            QString("%1 %2 (%3)").arg(q(m.maker), q(m.name)).arg(m.model), list_);
        item->setData(Qt::UserRole, m.model);
    }
    device_ = new QLineEdit(this);
    device_->setObjectName("DevicePath");
    speed_ = new QSpinBox(this);
    speed_->setObjectName("DeviceSpeed");
    speed_->setRange(0, 1'000'000);

    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(use_);
    form->addRow(new QLabel(q(texts(1224)), this));
    form->addRow(search_);
    form->addRow(list_);
    form->addRow(q(texts(1225)), device_);
    form->addRow(q(texts(1226)), speed_);
    connect(search_, &QLineEdit::textChanged, this, &RigDeviceFields::filter);
}

void RigDeviceFields::filter(const QString& text) {
    // Every word typed must stand in maker or model: "yaesu 817".
    const QStringList words = text.simplified().split(' ', Qt::SkipEmptyParts);
    for (int i = 0; i < list_->count(); ++i) {
        QListWidgetItem* item = list_->item(i);
        bool shown = true;
        for (const QString& w : words)
            shown = shown && item->text().contains(w, Qt::CaseInsensitive);
        item->setHidden(!shown);
    }
}

std::optional<long long> RigDeviceFields::chosenModel() const {
    const QListWidgetItem* item = list_->currentItem();
    if (!item || !item->isSelected())
        return std::nullopt;
    return item->data(Qt::UserRole).toLongLong();
}

void RigDeviceFields::setValues(const rig::DeviceSettings& d) {
    use_->setChecked(d.enabled);
    list_->clearSelection();
    for (int i = 0; i < list_->count(); ++i) {
        if (list_->item(i)->data(Qt::UserRole).toLongLong() == d.model) {
            list_->setCurrentRow(i);
            list_->scrollToItem(list_->item(i));
            break;
        }
    }
    device_->setText(q(d.device));
    speed_->setValue(static_cast<int>(d.speed));
}

rig::DeviceSettings RigDeviceFields::values() const {
    rig::DeviceSettings d;
    d.enabled = use_->isChecked();
    d.model = chosenModel().value_or(rig::kNetworkModel);
    d.device = device_->text().trimmed().toStdString();
    d.speed = speed_->value();
    return d;
}

std::optional<Failure> RigDeviceFields::validate() const {
    if (!use_->isChecked())
        return std::nullopt;
    if (!chosenModel())
        return refuse(1228, "ModelList");
    const std::string device = device_->text().trimmed().toStdString();
    if (device.empty())
        return refuse(1229, "DevicePath");
    if (*chosenModel() == rig::kNetworkModel && !rig::parseHostPort(device))
        return refuse(1243, "DevicePath", device);
    return std::nullopt;
}

} // namespace orv::ui
