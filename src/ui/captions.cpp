#include "ui/captions.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>

#include "core/i18n/texts.h"

namespace orv::ui {
namespace {

// The rows of `Beschriften`, then the menu heads, which take their rows of
// the table as well so that a language file renames the whole bar.
constexpr CaptionRow kMainWindow[] = {
    {"MnLoadLog", 261},
    {"MnOptionen", 81},
    {"DXCCImp", 83},
    {"MnARRLImport", 93},
    {"Auswerten", 86},
    {"NewQBDat", 87},
    {"MnSichern", 88},
    {"QBDatEdit", 89},
    {"MnODX", 169},
    {"MnGrossF", 26},
    {"MnGruppenAendern", 221},
    {"MnGrid1Edit", 71},
    {"MnGrid1KillRetur", 228},
    {"MnMarkASKill", 20},
    {"MnSprache", 231},
    {"MnOptionenA", 81},
    {"MnTimeEdit", 233},
    {"MnHilfeTasten", 91},
    {"MnHilfeInfo", 92},
    {"MnLaenderlisteDownL", 249},
    {"MnHomepage", 248},
    {"MnLogLoeschen", 256},
    {"MnQBDatImport", 257},
    {"MnARRLImportDownL", 276},
    {"MnStatistikKurz", 285},
    {"MnTimeDateEdit", 292},
    {"MnEDIUpload", 329},
    {"MnCWFensterAN", 351},
    {"MnEDIEdit", 365},
    {"MnGrid3Edit", 71},
    {"MnOrvantaLog", 370},
    {"MnLogCopy", 412},
    {"MnLogExport", 402},
    {"MnLogImport", 403},
    {"MnLogImportFremd", 403},
    {"MnImportHAMIII", 417},
    {"MnDBCheck", 280},
    {"MnCallADD", 210},
    {"MnLocatorADD", 211},
    {"MnCallLocADD", 212},
    {"MnEditList1", 213},
    {"MnGrid3CallGO", 210},
    {"MnGrid3LocGO", 211},
    {"MnGrid3CallLocGO", 212},
    {"MnGrid3DBEdit", 213},
    {"Label6", 150},
    {"Label2", 151},
    {"Label3", 152},
    {"Label5", 153},
    {"Label4", 154},
    {"Label7", 155},
    {"Label8", 156},
    {"Label9", 157},
    {"Label10", 158},
    {"Label25", 159},
    {"Label26", 160},
    {"Label29", 161},
    {"Label24", 158},
    {"Label15", 165},
    {"Label14", 95},
    {"Label16", 163},
    {"Label17", 169},
    {"Label27", 26},
    {"Command1", 20},
    {"Command2", 279},
    {"Command3", 279},
    {"Command5", 151},
    {"Command6", 155},
    {"Command7", 279},
    {"Frame4", 280},
    {"Label32", 220},
    {"Label30", 206},
    {"Label1", 176},
    {"MnDatei", 80},
    {"MnAnsicht", 90},
    {"MnHilfe", 82},
    {"MnStatistik", 267},
    {"MnAuswert", 501},
    {"MnLog", 401},
    {"MnFremd", 416},
    {"MnLogLöschen", 49},
};

void setCaption(QObject* o, const QString& text) {
    if (auto* m = qobject_cast<QMenu*>(o))
        m->setTitle(text);
    else if (auto* a = qobject_cast<QAction*>(o))
        a->setText(text);
    else if (auto* l = qobject_cast<QLabel*>(o))
        l->setText(text);
    else if (auto* b = qobject_cast<QAbstractButton*>(o))
        b->setText(text);
    else if (auto* g = qobject_cast<QGroupBox*>(o))
        g->setTitle(text);
}

// Whether `o` stands in the window of `root` and not in another window that
// happens to be its child (a dialog with controls of the same names). A menu
// pops up as a window of its own but belongs to the window it hangs on.
bool inRootWindow(const QObject* o, const QWidget* rootWindow) {
    const QObject* p = o;
    while (p && !p->isWidgetType())
        p = p->parent();
    auto* w = static_cast<const QWidget*>(p);
    while (w && qobject_cast<const QMenu*>(w))
        w = w->parentWidget();
    return !rootWindow || !w || w->window() == rootWindow;
}

// The property under which a control keeps the row of each captioned part.
constexpr const char* kRowProperty[] = {"orvTextRow", "orvPlainTextRow", "orvToolTipRow",
                                        "orvWindowTitleRow"};
constexpr CaptionPart kParts[] = {CaptionPart::Text, CaptionPart::PlainText, CaptionPart::ToolTip,
                                  CaptionPart::WindowTitle};

void setPart(QObject& o, CaptionPart part, QString text) {
    auto* w = qobject_cast<QWidget*>(&o);
    switch (part) {
    case CaptionPart::Text:
        setCaption(&o, text);
        break;
    case CaptionPart::PlainText:
        setCaption(&o, text.remove('&'));
        break;
    case CaptionPart::ToolTip:
        if (w)
            w->setToolTip(text);
        else if (auto* a = qobject_cast<QAction*>(&o))
            a->setToolTip(text);
        break;
    case CaptionPart::WindowTitle:
        if (w)
            w->setWindowTitle(text.remove('&'));
        break;
    }
}

void recaption(QObject& o, const Texts& texts) {
    for (std::size_t i = 0; i < std::size(kParts); ++i) {
        const QVariant row = o.property(kRowProperty[i]);
        if (row.isValid())
            setPart(o, kParts[i], QString::fromStdString(texts(row.toInt())));
    }
}

} // namespace

void captionFromRow(QObject& control, int row, const Texts& texts, CaptionPart part) {
    control.setProperty(kRowProperty[static_cast<std::size_t>(part)], row);
    setPart(control, part, QString::fromStdString(texts(row)));
}

void recaptionOpenWindows(const Texts& texts) {
    for (QWidget* top : QApplication::topLevelWidgets()) {
        recaption(*top, texts);
        for (QObject* o : top->findChildren<QObject*>())
            recaption(*o, texts);
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(top, &change);
    }
}

std::span<const CaptionRow> mainWindowCaptions() {
    return kMainWindow;
}

void applyCaptions(QObject& root, std::span<const CaptionRow> rows, const Texts& texts) {
    const auto* rootWidget = qobject_cast<const QWidget*>(&root);
    const QWidget* rootWindow = rootWidget ? rootWidget->window() : nullptr;
    for (const CaptionRow& row : rows) {
        const QString name = QString::fromUtf8(row.control);
        const QString text = QString::fromStdString(texts(row.text));
        // A menu's own action carries the menu's name too; set the menu.
        if (auto* menu = root.findChild<QMenu*>(name)) {
            setCaption(menu, text);
            continue;
        }
        if (root.objectName() == name)
            setCaption(&root, text);
        for (QObject* o : root.findChildren<QObject*>(name))
            if (inRootWindow(o, rootWindow))
                setCaption(o, text);
    }
}

} // namespace orv::ui
