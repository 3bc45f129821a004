#include "ui/cw_input.h"

#include <QKeyEvent>
#include <QMenu>

#include "core/i18n/texts.h"
#include "core/keying/cw_macros.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

bool isMacroTag(const QString& s) {
    for (int i = 0; i < static_cast<int>(keying::kMacros.size()); ++i)
        if (s == q(keying::macroTag(i)))
            return true;
    return false;
}

} // namespace

CwInput::CwInput(const char* name, bool memoryEditor, const Texts& texts, QWidget* parent)
    : QLineEdit(parent), memoryEditor_(memoryEditor), texts_(texts) {
    setObjectName(name);
    connect(this, &QLineEdit::textEdited, this, &CwInput::filterEdited);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &CwInput::showMenu);
}

void CwInput::filterEdited() {
    const QString now = text();
    const QString filtered = q(keying::filterTyped(now.toStdString()));
    if (filtered == now)
        return;
    const int cursor =
        static_cast<int>(q(keying::filterTyped(now.left(cursorPosition()).toStdString())).size());
    setText(filtered);
    setCursorPosition(cursor);
}

void CwInput::insertMacro(int index) {
    insert(q(keying::macroTag(index)));
    setFocus();
}

void CwInput::keyPressEvent(QKeyEvent* e) {
    if (memoryEditor_ && !hasSelectedText() && e->modifiers() == Qt::NoModifier) {
        const int c = cursorPosition();
        const QString t = text();
        if (e->key() == Qt::Key_Backspace && c >= 7 && isMacroTag(t.mid(c - 7, 7))) {
            setText(t.left(c - 7) + t.mid(c));
            setCursorPosition(c - 7);
            return;
        }
        if (e->key() == Qt::Key_Delete && isMacroTag(t.mid(c, 7))) {
            setText(t.left(c) + t.mid(c + 7));
            setCursorPosition(c);
            return;
        }
    }
    QLineEdit::keyPressEvent(e);
}

void CwInput::showMenu(const QPoint& pos) {
    QMenu menu(this);
    menu.addAction(q(texts_(354)), this, &QLineEdit::cut);
    menu.addAction(q(texts_(355)), this, &QLineEdit::copy);
    menu.addAction(q(texts_(356)), this, [this] {
        paste();
        filterEdited();
    });
    menu.addAction(q(texts_(357)), this, &QLineEdit::del);
    menu.addAction(q(texts_(358)), this, &QLineEdit::selectAll);
    QMenu* macros = menu.addMenu(q(texts_(359)));
    for (int i = 0; i < static_cast<int>(keying::kMacros.size()); ++i)
        macros->addAction(q(texts_(keying::kMacros[static_cast<std::size_t>(i)].textRow)), this,
                          [this, i] { insertMacro(i); });
    menu.exec(mapToGlobal(pos));
}

} // namespace orv::ui
