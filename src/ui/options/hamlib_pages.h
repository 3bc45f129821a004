#pragma once

#include <QWidget>
#include <array>
#include <optional>
#include <vector>

#include "core/logstore/bands.h"
#include "core/util/result.h"
#include "platform/hamlib/hamlib_devices.h"
#include "ui/options/options_page.h"

class QLineEdit;

namespace orv::ui {

class RigDeviceFields;

// The options pages "Rotator" and "Rig": sections `Rotator` and `Rig` of the
// settings file, a Hamlib device each; the rig's page also holds, per band,
// a transverter offset in MHz. The page stands alone so that it can be
// driven without the dialog: load() fills it, validate() names the first
// refusal (text row and the objectName of the field to focus), save() writes
// the section.
class HamlibPage final : public QWidget {
    Q_OBJECT
public:
    enum class Device { Rotator, Rig };

    HamlibPage(const Texts& texts, Device device, std::vector<platform::HamlibModel> models,
               QWidget* parent = nullptr);
    // With the models of the installed Hamlib.
    HamlibPage(const Texts& texts, Device device, QWidget* parent = nullptr);

    void load(const Settings& settings);
    std::optional<Failure> validate() const;
    void save(Settings& settings) const;

private:
    Device device_;
    RigDeviceFields* fields_ = nullptr;
    std::array<QLineEdit*, kBandCount> offsets_{}; // the rig's only
};

// The pages in the options dialog.
OptionsPage* makeRotatorOptionsPage(OptionsContext& ctx, QWidget* parent);
OptionsPage* makeRigOptionsPage(OptionsContext& ctx, QWidget* parent);

} // namespace orv::ui
