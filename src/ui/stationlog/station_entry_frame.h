#pragma once

#include <QFrame>
#include <QString>
#include <map>
#include <string>
#include <vector>

#include "core/stationlog/entry_check.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QWidget;

namespace orv {
class Texts;
struct StationLists;
} // namespace orv

namespace orv::ui {

// The entry frame of the station log: the boxes of one QSO with their
// labels and the save button `Command2`. Each box keeps its control name as
// object name and takes no more characters than its field holds.
class StationEntryFrame final : public QFrame {
    Q_OBJECT
public:
    StationEntryFrame(const Texts& texts, QWidget* parent = nullptr);

    StationEntry entry() const;
    // Shows a stored record (a click in the grid).
    void showEntry(const StationEntry& e);
    // The clock's tick: date and time of now into Text1 and Text2.
    void showClock(const DateTime& now);
    // After a save: Text3, Text6, Text7, Text8 and Text10 emptied.
    void clearAfterSave();
    // Fills the pick lists, keeping what the boxes hold.
    void setLists(const StationLists& lists, const std::vector<std::string>& myCalls);
    void setQslAndPower(const std::string& qsl, const std::string& power);
    QString qsl() const;
    QString power() const;
    // The own locators offered in Combo8, with the one typed now.
    std::vector<std::string> myLocators() const;

    // The box of a control name (for the focus after a refusal).
    QWidget* box(const std::string& control) const;
    QPushButton* saveButton() const { return save_; }

signals:
    // The user asked to save (the button or Enter in a box).
    void saveRequested();
    // Date or time was typed: the clock must stop.
    void clockEdited();

protected:
    void changeEvent(QEvent* e) override;

private:
    QLineEdit* line(const char* control, int size);
    void setPropagationTips();
    QComboBox* combo(const char* control, int size);

    const Texts& texts_;
    std::map<std::string, QWidget*> boxes_;
    QLineEdit *date_, *time_, *call_, *rstRx_, *rstTx_, *locator_, *manager_, *name_, *note_;
    QComboBox *qrgTx_, *qrgRx_, *txMode_, *rxMode_, *prop_, *qsl_, *myCall_, *myLocator_, *power_,
        *antenna_;
    QPushButton* save_;
    std::string qslRx_; // not shown; kept while a record is changed
};

} // namespace orv::ui
