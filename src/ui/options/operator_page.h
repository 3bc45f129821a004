#pragma once

#include <functional>
#include <memory>

#include "core/options/operator_table.h"
#include "ui/options/options_page.h"

class QPushButton;
class QTableWidget;

namespace orv::ui {

// The operator table (`OPCallList`) in its two grids: `MSFlexGrid1` with
// each operator's voice file, `MSFlexGrid2` with the CW beacon text and its
// tone file. A text is rendered into its tone file when it is entered; a new
// speed renders every text once more when the dialog is confirmed.
class OperatorPage final : public OptionsPage {
    Q_OBJECT
public:
    // `speed` is the value of the speed list in hand (`ComboCW1`).
    OperatorPage(OptionsContext& ctx, std::function<int()> speed, QWidget* parent);
    ~OperatorPage() override;
    void load(const Settings& s) override;
    void save(Settings& s) override;
    void saved() override;
    void cancelled() override;

    // Test hook: the progress of a rebuild, (done, total) after each file.
    std::function<void(int, int)> onRebuildStep;

private:
    QTableWidget* grid(const char* name, std::initializer_list<int> titleRows);
    QWidget* buttons(std::initializer_list<std::pair<const char*, int>> list,
                     std::vector<QPushButton*>& out);
    void show();
    int row() const;
    void select(int r);
    void addOperator();
    void changeFile();
    void removeOperator();
    void moveOperator(int by);
    void enterText(bool change);
    void clearText();
    void report(const Failure& f);
    std::string voiceName(const QString& file) const;

    std::function<int()> speed_;
    std::unique_ptr<options::OperatorTable> table_;
    QTableWidget* voiceGrid_ = nullptr;
    QTableWidget* cwGrid_ = nullptr;
    int renderedWpm_ = 0;
};

} // namespace orv::ui
