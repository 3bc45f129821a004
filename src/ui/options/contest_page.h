#pragma once

#include <array>
#include <optional>
#include <vector>

#include "core/logstore/contest_defs.h"
#include "ui/options/options_page.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace orv::ui {

// Contest definitions: the list `ConE` of named band weights, edited with
// new, change and delete, and the contest of the open log, which `OK2`
// stores (in `AConDat` and in the log) without the other pages.
class ContestPage final : public OptionsPage {
    Q_OBJECT
public:
    // `open` is the contest of the open log, nothing without one.
    ContestPage(OptionsContext& ctx, std::optional<ContestData> open, QWidget* parent);
    void load(const Settings& s) override;
    void save(Settings& s) override;

    // The name and weights in the boxes, checked.
    Result<ContestData> current() const;
    const std::vector<ContestDef>& definitions() const { return defs_; }

signals:
    void applyToLog();    // OK2
    void cancelPressed(); // Abbrechen2

private:
    void show(const ContestData& c);
    void chosen(const QString& name);
    Result<ContestDef> typed(int self) const;
    void addDef();
    void changeDef();
    void removeDef();
    void refill(const QString& select);
    void report(const Failure& f);

    std::optional<ContestData> open_;
    std::vector<ContestDef> defs_;
    QComboBox* name_ = nullptr;
    std::array<QLineEdit*, kBandCount> weights_{};
};

} // namespace orv::ui
