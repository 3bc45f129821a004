#pragma once

#include <QWidget>
#include <vector>

#include "core/i18n/texts.h"
#include "core/map/rate_intervals.h"

class QComboBox;

namespace orv::ui {

// The rate graph: QSOs per interval of 10 or 60 minutes over the contest as
// bars and points as lines, each for the selected band and for all bands,
// and the rate display's `Zeitbereich` count of the band as a dashed line.
class RateGraph final : public QWidget {
    Q_OBJECT
public:
    RateGraph(const Texts& texts, QWidget* parent);

    void setSamples(std::vector<map::RateSample> band, std::vector<map::RateSample> all,
                    int zeitbereichMinutes);
    int stepMinutes() const;
    void setStepMinutes(int minutes);

    // What is drawn, for the window's tests.
    const std::vector<map::RateInterval>& allIntervals() const { return all_; }
    const std::vector<map::RateInterval>& bandIntervals() const { return band_; }
    const std::vector<std::int64_t>& zeitbereichLine() const { return zeitbereich_; }

private:
    void recompute();
    class Plot;

    const Texts& texts_;
    QComboBox* step_ = nullptr;
    Plot* plot_ = nullptr;
    std::vector<map::RateSample> bandSamples_, allSamples_;
    int zeitbereichMinutes_ = 60;
    // Intervals over all bands; the band's are aligned to them.
    std::vector<map::RateInterval> all_, band_;
    std::vector<std::int64_t> zeitbereich_;
};

} // namespace orv::ui
