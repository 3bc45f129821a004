#pragma once

#include <QWidget>
#include <optional>

#include "core/capture/rate_meter.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QListWidget;

namespace orv::ui {

class BeaconRow;

// The band's running numbers as the statistics frame shows them. Core
// computes them; the panel only writes them into its labels.
struct BandFigures {
    long long lastQsoNr = 0;
    long long pGesamt = 0;
    QString kmPerQso = "0";
    long long odx = 0;
    long long squares = 0;
    long long deleted = 0;
};

// The right side of the main window: the statistics frame `Frame1`, the
// rate meter `Picture7`, the beacon row `PictureBake` with its count
// `Combo10`, and the lookup list `List1`.
class SidePanel : public QWidget {
    Q_OBJECT
public:
    explicit SidePanel(QWidget* parent);

    void setBandFigures(const BandFigures& f);
    void setRate(const std::optional<RateReading>& reading);
    // The numbers would tell of the row before a correction is stored.
    void setStatisticsEnabled(bool on);

    // `Combo10`: the maximum number of beacon calls.
    void setMaxBake(int n);
    int maxBake() const;
    QComboBox* maxBakeBox() const { return maxBake_; }
    // The beacon's button, options and displays.
    BeaconRow* beaconRow() const { return beaconRow_; }

    // The lines of the lookup list `List1`, the first one selected.
    void setLookupLines(const QStringList& lines);
    QListWidget* lookupList() const { return lookupList_; }

signals:
    void odxClicked();
    void squaresClicked();
    void rateClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* buildBeaconRow();

    QGroupBox* statistics_ = nullptr;
    QWidget* meter_ = nullptr;
    QLabel* rate_ = nullptr;
    QComboBox* maxBake_ = nullptr;
    BeaconRow* beaconRow_ = nullptr;
    QListWidget* lookupList_ = nullptr;
};

} // namespace orv::ui
