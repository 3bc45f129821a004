#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "core/util/result.h"
#include "platform/hamlib/hamlib_devices.h"

namespace orv {
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class RigDeviceFields;

// The options page "Rotator": section `Rotator` of the settings file.
// load() fills it, validate() names the first refusal (text row and the
// objectName of the field to focus), save() writes the section; the dialog
// calls save() only after every page validated.
class RotatorPage final : public QWidget {
    Q_OBJECT
public:
    RotatorPage(const Texts& texts, std::vector<platform::HamlibModel> models,
                QWidget* parent = nullptr);
    // With the models of the installed Hamlib.
    explicit RotatorPage(const Texts& texts, QWidget* parent = nullptr);

    void load(const Settings& settings);
    std::optional<Failure> validate() const;
    void save(Settings& settings) const;
    QString title() const { return title_; }

private:
    RigDeviceFields* fields_ = nullptr;
    QString title_;
};

} // namespace orv::ui
