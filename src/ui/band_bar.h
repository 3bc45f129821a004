#pragma once

#include <QColor>
#include <QFrame>
#include <array>
#include <bitset>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace orv::ui {

// The band bar `Picture1`: the ten buttons `BandSel(i)`, the band box
// `Combo1` and the own station's call and locator.
class BandBar : public QFrame {
    Q_OBJECT
public:
    explicit BandBar(QWidget* parent);

    void selectBand(int index);
    int currentBand() const;
    // A band with QSOs in this log shows in the colour `FarbeBereitsQso`.
    void setBandHasQsos(int index, bool has);
    bool bandHasQsos(int index) const;
    void setQsoColour(const QColor& c);
    void setOwnStation(const QString& call, const QString& locator);
    // The bands on which the call in hand is already in the log: their
    // buttons are framed.
    void setWorkedOn(const std::bitset<10>& bands);
    const std::bitset<10>& workedOn() const { return workedOn_; }

signals:
    // A band button was pressed (after it selected its band).
    void buttonPressed(int index);
    // `Combo1` changed to this band.
    void bandChanged(int index);

private:
    void paint();

    QComboBox* bandBox_ = nullptr;
    std::array<QPushButton*, 10> buttons_{};
    std::array<bool, 10> hasQsos_{};
    std::bitset<10> workedOn_;
    QColor qsoColour_{224, 224, 224};
    QLineEdit* ownCall_ = nullptr;
    QLineEdit* ownLocator_ = nullptr;
};

} // namespace orv::ui
