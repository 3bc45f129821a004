#pragma once

#include <QDialog>
#include <functional>
#include <optional>
#include <vector>

#include "core/logstore/contest_defs.h"
#include "ui/options/options_page.h"

class QListWidget;
class QStackedWidget;

namespace orv::ui {

class ContestPage;
class CwPage;
class OperatorPage;

// The options dialog `Form4`: the pages in a list on the left, one shown at
// a time. `OK` checks the pages in their order and stops on the first
// refusal, on its page; then every page writes into a copy of the settings
// file, which replaces the file in one step. A save that fails keeps the
// dialog open with the message and leaves the file as it was. `Abbrechen`
// saves nothing. `OK2` stores only the contest of the open log.
class OptionsDialog final : public QDialog {
    Q_OBJECT
public:
    // `live` are the settings the pages start from; `openContest` the
    // contest of the open log, nothing without one.
    OptionsDialog(OptionsContext ctx, const Settings& live, std::optional<ContestData> openContest,
                  QWidget* parent = nullptr);
    ~OptionsDialog() override;

    // `OK`: true when everything was saved (the dialog is then accepted).
    bool confirm();
    // `OK2`: the contest page alone, into `AConDat` and to the open log.
    bool confirmContest();
    // The contest stored by `OK2`, when it was pressed.
    const std::optional<ContestData>& appliedContest() const { return applied_; }

    void showPage(int index);
    int currentPage() const;
    const std::vector<OptionsPage*>& pages() const { return pages_; }
    OperatorPage* operatorPage() const { return operators_; }

    void done(int result) override;

private:
    bool refused(int page, const Failure& f);
    bool writeStaged(const std::function<void(Settings&)>& write);

    OptionsContext ctx_;
    QListWidget* list_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    std::vector<OptionsPage*> pages_;
    CwPage* cw_ = nullptr;
    OperatorPage* operators_ = nullptr;
    ContestPage* contest_ = nullptr;
    std::optional<ContestData> applied_;
    bool finished_ = false;
};

} // namespace orv::ui
