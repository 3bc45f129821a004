#include "ui/log_print.h"

#include <QFont>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace orv::ui {
namespace {

bool qtPrintDialog(QPrinter& printer, QWidget* parent) {
    QPrintDialog d(&printer, parent);
    return d.exec() == QDialog::Accepted;
}

void qtPreview(QPrintPreviewDialog& d) {
    d.exec();
}

// The layout's sheet: A4 in the layout's orientation, drawn from the paper's
// edge, since the layout keeps its own margins.
void setUpPrinter(QPrinter& printer, const print::Document& doc) {
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(doc.width > doc.height ? QPageLayout::Landscape
                                                      : QPageLayout::Portrait);
    printer.setFullPage(true);
    printer.setDocName(QString::fromStdString(doc.title));
}

} // namespace

std::function<bool(QPrinter&, QWidget*)> PrintHooks::printDialog = qtPrintDialog;
std::function<void(QPrintPreviewDialog&)> PrintHooks::preview = qtPreview;

void PrintHooks::reset() {
    printDialog = qtPrintDialog;
    preview = qtPreview;
}

void paintDocument(QPrinter& printer, const print::Document& doc) {
    QPainter p;
    if (!p.begin(&printer))
        return;
    // Points of the layout to pixels of the device.
    const double s = printer.resolution() / 72.0;
    QFont regular("Courier New");
    regular.setStyleHint(QFont::TypeWriter);
    regular.setFixedPitch(true);
    QFont bold = regular;
    bold.setBold(true);
    for (std::size_t i = 0; i < doc.pages.size(); ++i) {
        if (i > 0)
            printer.newPage();
        const print::Page& page = doc.pages[i];
        p.setPen(QPen(Qt::black, 0.5 * s));
        for (const print::Rule& r : page.rules)
            p.drawLine(QPointF(r.x1 * s, r.y1 * s), QPointF(r.x2 * s, r.y2 * s));
        for (const print::Text& t : page.texts) {
            QFont f = t.bold ? bold : regular;
            f.setPointSizeF(t.size);
            p.setFont(f);
            p.drawText(QPointF(t.x * s, t.y * s), QString::fromStdString(t.text));
        }
    }
    p.end();
}

bool printDocument(const print::Document& doc, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    setUpPrinter(printer, doc);
    if (!PrintHooks::printDialog(printer, parent))
        return false;
    paintDocument(printer, doc);
    return true;
}

void previewDocument(const print::Document& doc, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    setUpPrinter(printer, doc);
    QPrintPreviewDialog d(&printer, parent);
    d.setObjectName("PrintPreview");
    QObject::connect(&d, &QPrintPreviewDialog::paintRequested, &d,
                     [&doc](QPrinter* pr) { paintDocument(*pr, doc); });
    PrintHooks::preview(d);
}

} // namespace orv::ui
