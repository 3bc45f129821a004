#include "ui/widget_helpers.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace orv::ui {

QLineEdit* makeField(const char* name, int chars, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    const int w = e->fontMetrics().horizontalAdvance(QString(chars, QChar('W')));
    e->setMinimumWidth(w + 12);
    e->setAutoFillBackground(true);
    return e;
}

QComboBox* makeCombo(const char* name, int chars, bool editable, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(editable);
    c->setMinimumWidth(c->fontMetrics().horizontalAdvance(QString(chars, QChar('W'))) + 32);
    return c;
}

QLabel* makeLabel(const char* name, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    return l;
}

void setBackground(QWidget* w, const QColor& c) {
    QPalette p = w->palette();
    p.setColor(QPalette::Base, c);
    w->setPalette(p);
}

int twipsToPixels(const QWidget* w, int twips) {
    return twips * w->logicalDpiX() / 1440;
}

void focusField(QWidget* field, bool selectAll) {
    field->setFocus(Qt::OtherFocusReason);
    if (auto* e = qobject_cast<QLineEdit*>(field)) {
        if (selectAll)
            e->selectAll();
    } else if (auto* c = qobject_cast<QComboBox*>(field); c && c->lineEdit() && selectAll) {
        c->lineEdit()->selectAll();
    }
}

void foldToUpper(QLineEdit* e) {
    QObject::connect(e, &QLineEdit::textEdited, e, [e](const QString& t) {
        const QString up = t.toUpper();
        if (up != t) {
            const int pos = e->cursorPosition();
            e->setText(up);
            e->setCursorPosition(pos);
        }
    });
}

} // namespace orv::ui
