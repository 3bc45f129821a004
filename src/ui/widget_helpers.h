#pragma once

#include <QColor>
#include <QString>
#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

// Small builders shared by the parts of the main window, so that every field
// and label is made the same way.
namespace orv::ui {

inline QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// A line edit wide enough for `chars` wide characters.
QLineEdit* makeField(const char* name, int chars, QWidget* parent);
QComboBox* makeCombo(const char* name, int chars, bool editable, QWidget* parent);
QLabel* makeLabel(const char* name, QWidget* parent);
// The background of an input field.
void setBackground(QWidget* w, const QColor& c);
// Twips of the original layout to pixels of this screen.
int twipsToPixels(const QWidget* w, int twips);
// Focus on a field; a line edit (or the edit of a combo box) selects its text.
void focusField(QWidget* field, bool selectAll);
// Pasted text is folded to upper case as typed text is.
void foldToUpper(QLineEdit* e);

} // namespace orv::ui
