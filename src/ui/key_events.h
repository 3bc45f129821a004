#pragma once

#include <QKeyEvent>
#include <optional>

// How the windows read a key press.
namespace orv::ui {

// A key that types a character, as opposed to navigation and shortcuts.
inline std::optional<QChar> typedChar(const QKeyEvent* e) {
    if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return std::nullopt;
    const QString t = e->text();
    if (t.size() != 1 || t[0].unicode() < 32 || t[0].unicode() == 127)
        return std::nullopt;
    return t[0];
}

inline bool isEnter(const QKeyEvent* e) {
    return e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
}

inline bool ctrl(const QKeyEvent* e, int key) {
    return e->key() == key && (e->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}

inline bool plain(const QKeyEvent* e, int key) {
    return e->key() == key && (e->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace orv::ui
