#pragma once

class QDialog;
class QWidget;

namespace orv {
class Texts;
}

namespace orv::ui {

// The key help `Form3`, modeless, so the operator keeps typing with it open.
QDialog* makeKeyHelp(QWidget* parent, const Texts& texts);
// The about box `Form10`.
QDialog* makeAbout(QWidget* parent, const Texts& texts);

} // namespace orv::ui
