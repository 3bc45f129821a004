#include "ui/correction_line.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include "core/capture/entry_rules.h"
#include "core/util/ports.h"
#include "ui/entry_line.h"
#include "ui/key_events.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

// The mode boxes of the correction line are lists; a mode that the list
// lacks (a log from another station) is added so the row keeps it.
void chooseItem(QComboBox* box, const QString& text) {
    if (box->isEditable()) {
        box->setEditText(text);
        return;
    }
    int at = box->findText(text);
    if (at < 0 && !text.isEmpty()) {
        box->addItem(text);
        at = box->count() - 1;
    }
    box->setCurrentIndex(at);
}

// Space and Shift+Space: the field each one leads to.
const char* walkTarget(const QString& from, bool back) {
    struct Step {
        const char* from;
        const char* forward;
        const char* backward;
    };
    static const Step steps[] = {
        {"Text22", "Text33", "Text77"},  {"Text14", "Text33", "Text22"},
        {"Text33", "Text44", "Text77"},  {"Text44", "Text66", "Text33"},
        {"Text55", "Text66", "Text44"},  {"Text66", "Text77", "Text44"},
        {"Text77", "Text33", "Text66"},  {"Text88", "Text33", "Text77"},
        {"Text101", "Text33", "Text77"},
    };
    for (const Step& s : steps)
        if (from == QLatin1String(s.from))
            return back ? s.backward : s.forward;
    return nullptr;
}

} // namespace

CorrectionLine::CorrectionLine(Beeper& beeper, QWidget* parent) : QFrame(parent), beeper_(beeper) {
    setObjectName("Picture33");
    setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(this);
    g->setContentsMargins(8, 4, 8, 6);
    int col = 0;
    auto add = [&](const char* label, QWidget* w) {
        g->addWidget(makeLabel(label, this), 0, col);
        g->addWidget(w, 1, col++);
    };
    add("EditLabelCall", makeField("Text33", 10, this));
    add("EditLabelRst", makeField("Text44", 3, this));
    auto* nr = makeField("Text55", 4, this);
    nr->setReadOnly(true);
    add("EditLabelNr", nr);
    add("EditLabelRstNr", makeField("Text66", 6, this));
    add("EditLabelLocator", makeField("Text77", 6, this));
    auto* qrb = makeField("Text88", 5, this);
    qrb->setReadOnly(true);
    add("EditLabelQrb", qrb);
    add("EditLabelTime", makeField("Text22", 5, this));
    add("Label25", makeField("Text14", 10, this));
    add("Label26", makeCombo("Combo4", 4, false, this));
    add("Label29", makeCombo("Combo5", 4, false, this));
    add("EditLabelQsl", makeField("Text101", 3, this));
    add("Label24", makeField("Text99", 14, this));
    auto* prop = makeCombo("Combo7", 3, true, this);
    prop->lineEdit()->setMaxLength(3);
    add("Label1", prop);
    add("EditLabelOperator", makeCombo("Combo9", 8, true, this));

    for (const char* name : {"Text33", "Text77", "Text44", "Text66"})
        foldToUpper(field(name));
    connect(field("Text77"), &QLineEdit::textChanged, this, [this](const QString& t) {
        if (!loading_)
            emit locatorEdited(t);
    });
    hide();
}

QLineEdit* CorrectionLine::field(const char* name) const {
    return findChild<QLineEdit*>(name);
}

QList<QWidget*> CorrectionLine::fields() const {
    QList<QWidget*> all;
    for (QLineEdit* e : findChildren<QLineEdit*>())
        all << e;
    for (QComboBox* c : findChildren<QComboBox*>())
        all << c;
    return all;
}

void CorrectionLine::load(int gridRow, const EditRow& r, const QString& number) {
    auto box = [this](const char* name) { return findChild<QComboBox*>(name); };
    // The change handlers of the fields must not answer the filling itself.
    loading_ = true;
    field("Text33")->setText(q(r.call));
    field("Text44")->setText(q(r.rst));
    field("Text55")->setText(number);
    field("Text66")->setText(q(r.rstNr));
    field("Text77")->setText(q(r.locator));
    field("Text88")->setText(q(r.qrb));
    field("Text22")->setText(q(r.time));
    field("Text14")->setText(q(r.date));
    field("Text101")->setText(q(r.qsl));
    field("Text99")->setText(q(r.note));
    chooseItem(box("Combo4"), q(r.mode));
    chooseItem(box("Combo5"), q(r.rxMode));
    chooseItem(box("Combo7"), q(r.prop));
    chooseItem(box("Combo9"), q(r.op));
    name_ = q(r.name);
    gridRow_ = gridRow;
    loading_ = false;
}

EditRow CorrectionLine::editRow() const {
    auto text = [this](const char* name) { return field(name)->text().toStdString(); };
    auto box = [this](const char* name) {
        return findChild<QComboBox*>(name)->currentText().toStdString();
    };
    EditRow r;
    r.call = text("Text33");
    r.rst = text("Text44");
    r.rstNr = text("Text66");
    r.locator = text("Text77");
    r.qrb = text("Text88");
    r.time = text("Text22");
    r.date = text("Text14");
    r.qsl = text("Text101");
    r.note = text("Text99");
    r.mode = box("Combo4");
    r.rxMode = box("Combo5");
    r.prop = box("Combo7");
    r.op = box("Combo9");
    r.name = name_.toStdString();
    return r;
}

void CorrectionLine::setQrb(const QString& km) {
    field("Text88")->setText(km);
}

void CorrectionLine::setColours(const FieldColours& colours) {
    for (QLineEdit* w : findChildren<QLineEdit*>())
        setBackground(w, w->isReadOnly() ? colours.noEdit : colours.inAktiv);
}

bool CorrectionLine::fieldKey(QWidget* f, QKeyEvent* e) {
    if (isEnter(e)) {
        emit commitRequested();
        return true;
    }
    const QString name = f->objectName();
    if (e->key() == Qt::Key_Space) {
        if (const char* to = walkTarget(name, e->modifiers() & Qt::ShiftModifier)) {
            const bool report = QLatin1String(to) == QLatin1String("Text44");
            QLineEdit* target = field(to);
            focusField(target, !report);
            if (report)
                target->setCursorPosition(0);
            return true;
        }
        return false;
    }
    const std::optional<QChar> typed = typedChar(e);
    auto* edit = qobject_cast<QLineEdit*>(f);
    if (!typed || !typed->isPrint() || typed->unicode() >= 128 || !edit)
        return false;
    const char c = typed->toLatin1();
    if (name == QLatin1String("Text33")) {
        // "-" becomes "/", as in the call field of the entry row.
        if (const auto filtered = entry::filterCallKey(c); filtered && *filtered != c) {
            edit->insert(QString(QChar(*filtered)));
            return true;
        }
        return false;
    }
    if (name == QLatin1String("Text44") || name == QLatin1String("Text66")) {
        const auto filtered = entry::filterReportKey(c);
        if (!filtered) {
            beeper_.beep();
            return true;
        }
        edit->insert(QString(QChar(*filtered)));
        return true;
    }
    if (name == QLatin1String("Text101")) {
        if (const auto v = entry::qslForKey(c))
            edit->setText(q(*v));
        return true;
    }
    return false;
}

} // namespace orv::ui
