#pragma once

#include <QLineEdit>

namespace orv {
class Texts;
}

// The text boxes of the CW window: whatever is typed or pasted is upper-cased
// and stripped of characters that cannot be sent, and a right click offers the
// edit commands and the macros.
namespace orv::ui {

class CwInput : public QLineEdit {
    Q_OBJECT
public:
    // memoryEditor: macros are atomic (Backspace and Delete take a whole tag).
    CwInput(const char* name, bool memoryEditor, const Texts& texts, QWidget* parent = nullptr);

    // Inserts "<" + macro + ">" at the cursor, cursor behind it.
    void insertMacro(int index);

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    void filterEdited();
    void showMenu(const QPoint& pos);

    bool memoryEditor_;
    const Texts& texts_;
};

} // namespace orv::ui
