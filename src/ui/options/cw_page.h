#pragma once

#include "ui/options/options_page.h"

class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QLineEdit;

namespace orv::ui {

// Beacon and CW (`Frame2`): the port and line that switch the transmitter
// for the voice beacon, the CW output with its port, key and PTT lines, the
// speed, the closing text `CWEND` and the voice beacon's pause. Only ports
// that are there and free are offered; a stored port that is not stays
// stored until another is chosen.
class CwPage final : public OptionsPage {
    Q_OBJECT
public:
    CwPage(OptionsContext& ctx, QWidget* parent);
    void load(const Settings& s) override;
    Status validate() override;
    void save(Settings& s) override;
    // `CWAudio/CWEnd.wav` follows the saved `CWEND`.
    void saved() override;

    // The speed of `ComboCW1`, 0 when none is chosen.
    int wpm() const;

private:
    struct PortBox {
        QComboBox* box = nullptr;
        long long stored = 0;
        bool keepStored = false;
    };
    QComboBox* portBox(const char* name, PortBox& p);
    QButtonGroup* lineGroup(const char* name, int lines, QWidget* parent, QBoxLayout* into);
    void fillPort(PortBox& p, const Settings& s, const std::vector<PortOffer>& offers);
    long long portValue(PortBox& p, Settings& s) const;

    PortBox com_, comCw_;
    QButtonGroup* pin_ = nullptr;
    QButtonGroup* pinCw_ = nullptr;
    QButtonGroup* pinCwPtt_ = nullptr;
    QComboBox* interface_ = nullptr;
    QComboBox* speed_ = nullptr;
    QLineEdit* cwEnd_ = nullptr;
    QLineEdit* loopPause_ = nullptr;
    std::string savedCwEnd_;
    int savedWpm_ = 0;
};

} // namespace orv::ui
