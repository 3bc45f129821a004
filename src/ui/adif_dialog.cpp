#include "ui/adif_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/settings/settings.h"
#include "core/submission/adif.h"
#include "core/submission/export_file.h"
#include "core/submission/text_listing.h"
#include "core/util/ports.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}
QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// The log opened for one export, or nothing after the message was shown.
std::optional<ContestLog> openForExport(const ExportContext& ctx,
                                        const std::filesystem::path& logFile) {
    Result<ContestLog> log = ContestLog::open(logFile);
    if (!log) {
        ctx.dialogs.inform(ctx.texts(log.failure().text), Icon::Critical);
        return std::nullopt;
    }
    return std::move(log).value();
}

} // namespace

AdifQrgPanel::AdifQrgPanel(Settings& settings, const Texts& texts, QWidget* parent)
    : QFrame(parent), settings_(settings) {
    setObjectName("FrameADIFQRG");
    setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(this);
    g->addWidget(new QLabel(q(texts(506)), this), 0, 0, 1, 2);
    for (int i = 0; i < kBandCount; ++i) {
        g->addWidget(
            new QLabel(q(kBands[static_cast<std::size_t>(i)].boxText) + " " + q(texts(287)), this),
            i + 1, 0);
        auto* e = new QLineEdit(this);
        e->setObjectName(QString("Text1(%1)").arg(i));
        boxes_[static_cast<std::size_t>(i)] = e;
        g->addWidget(e, i + 1, 1);
    }
    auto* store = new QPushButton(q(texts(23)), this);
    store->setObjectName("Command8");
    connect(store, &QPushButton::clicked, this, &AdifQrgPanel::store);
    auto* hide = new QPushButton(q(texts(11)), this);
    hide->setObjectName("Command9");
    connect(hide, &QPushButton::clicked, this, &QWidget::hide);
    g->addWidget(store, kBandCount + 1, 0);
    g->addWidget(hide, kBandCount + 1, 1);
    QFrame::hide();
}

void AdifQrgPanel::open() {
    // The stored values as they are: an empty box means the band's own text.
    for (int i = 0; i < kBandCount; ++i)
        boxes_[static_cast<std::size_t>(i)]->setText(q(settings_.get(keys::ADIFQRG(i))));
    show();
}

void AdifQrgPanel::store() {
    AdifFrequencies f;
    for (int i = 0; i < kBandCount; ++i)
        f[static_cast<std::size_t>(i)] = boxes_[static_cast<std::size_t>(i)]->text().toStdString();
    setAdifFrequencies(settings_, f);
}

void exportAdif(const ExportContext& ctx, const std::filesystem::path& logFile) {
    const auto chosen =
        SubmissionHooks::saveFile(ctx.parent, q(ctx.texts(182)), "*.adi", ctx.startFolder);
    if (chosen.empty())
        return;
    try {
        auto log = openForExport(ctx, logFile);
        if (!log)
            return;
        const auto bands = evaluateAllBands(*log, nullptr);
        const auto written = writeAdif(chosen, bands, adifFrequencies(ctx.settings));
        ctx.dialogs.inform(savedMessage(ctx.texts, written), Icon::Information);
    } catch (const std::exception& e) {
        ctx.dialogs.inform(ctx.texts(10) + "\n" + e.what(), Icon::Critical);
    }
}

void exportTextListing(const ExportContext& ctx, const std::filesystem::path& logFile) {
    const auto chosen =
        SubmissionHooks::saveFile(ctx.parent, q(ctx.texts(182)), "*.txt", ctx.startFolder);
    if (chosen.empty())
        return;
    const Answer withStats =
        ctx.dialogs.ask(ctx.texts(400), Buttons::YesNoCancel, Icon::Question, Answer::Yes);
    if (withStats == Answer::Cancel)
        return;
    try {
        auto log = openForExport(ctx, logFile);
        if (!log)
            return;
        const auto bands = evaluateAllBands(*log, ctx.countries);
        TextListingOptions o;
        o.withStatistics = withStats == Answer::Yes;
        o.now = ctx.clock.now();
        const auto written = writeTextListing(chosen, bands, ctx.texts, o);
        ctx.dialogs.inform(savedMessage(ctx.texts, written), Icon::Information);
    } catch (const std::exception& e) {
        ctx.dialogs.inform(ctx.texts(10) + "\n" + e.what(), Icon::Critical);
    }
}

} // namespace orv::ui
