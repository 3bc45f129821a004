#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "core/rig/rig_settings.h"
#include "core/util/result.h"
#include "platform/hamlib/hamlib_devices.h"

class QCheckBox;
class QLineEdit;
class QListWidget;
class QSpinBox;

namespace orv {
class Texts;
}

namespace orv::ui {

// What the rotator and the rig pages share: the switch, the Hamlib model
// chosen from the installed list (filtered by maker or model as typed), the
// device or host:port, and the serial speed.
class RigDeviceFields final : public QWidget {
    Q_OBJECT
public:
    // `useRow`: the caption of the switch.
    RigDeviceFields(const Texts& texts, int useRow, std::vector<platform::HamlibModel> models,
                    QWidget* parent = nullptr);

    void setValues(const rig::DeviceSettings& d);
    rig::DeviceSettings values() const;
    // The first refusal: no model, no device, a network model without
    // host:port. The field names the widget to focus.
    std::optional<Failure> validate() const;

    QLineEdit* search() const { return search_; }
    QListWidget* models() const { return list_; }

private:
    void filter(const QString& text);
    std::optional<long long> chosenModel() const;

    std::vector<platform::HamlibModel> models_;
    QCheckBox* use_ = nullptr;
    QLineEdit* search_ = nullptr;
    QListWidget* list_ = nullptr;
    QLineEdit* device_ = nullptr;
    QSpinBox* speed_ = nullptr;
};

} // namespace orv::ui
