#pragma once

#include <QWidget>
#include <array>
#include <optional>
#include <vector>

#include "core/logstore/bands.h"
#include "core/util/result.h"
#include "platform/hamlib/hamlib_devices.h"

class QLineEdit;

namespace orv {
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class RigDeviceFields;

// The options page "Rig": section `Rig` of the settings file with the
// device and, per band, a transverter offset in MHz. Same interface as the
// rotator page.
class RigPage final : public QWidget {
    Q_OBJECT
public:
    RigPage(const Texts& texts, std::vector<platform::HamlibModel> models,
            QWidget* parent = nullptr);
    explicit RigPage(const Texts& texts, QWidget* parent = nullptr);

    void load(const Settings& settings);
    std::optional<Failure> validate() const;
    void save(Settings& settings) const;
    QString title() const { return title_; }

private:
    RigDeviceFields* fields_ = nullptr;
    std::array<QLineEdit*, kBandCount> offsets_{};
    QString title_;
};

} // namespace orv::ui
