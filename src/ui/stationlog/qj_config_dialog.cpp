#include "ui/stationlog/qj_config_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "core/i18n/texts.h"
#include "core/stationlog/station_settings.h"

namespace orv::ui {
namespace {

// The lists by object name, with their captions' rows of the language table.
struct ListRow {
    const char* control;
    int textRow;
};
constexpr ListRow kLists[] = {
    {"ListQRG", 373},
    {"ListPWR", 376},
    {"ListANT", 139},
    {"ListMyLoc", 172},
};

QString joined(const std::vector<std::string>& v) {
    QStringList l;
    for (const auto& s : v)
        l << QString::fromStdString(s);
    return l.join('\n');
}

std::vector<std::string> split(const QPlainTextEdit* e) {
    std::vector<std::string> out;
    for (const QString& line : e->toPlainText().split('\n'))
        if (!line.trimmed().isEmpty())
            out.push_back(line.trimmed().toStdString());
    return out;
}

} // namespace

QjConfigDialog::QjConfigDialog(Settings& settings, const Texts& texts, QWidget* parent)
    : QDialog(parent), settings_(settings) {
    setObjectName("QjConfig");
    setWindowTitle(QString::fromStdString(texts(383)));
    auto* g = new QGridLayout(this);
    QPlainTextEdit* edits[4];
    for (int i = 0; i < 4; ++i) {
        const ListRow& r = kLists[i];
        g->addWidget(new QLabel(QString::fromStdString(texts(r.textRow)), this), 0, i);
        edits[i] = new QPlainTextEdit(this);
        edits[i]->setObjectName(r.control);
        g->addWidget(edits[i], 1, i);
    }
    qrg_ = edits[0];
    power_ = edits[1];
    antenna_ = edits[2];
    myLocator_ = edits[3];
    const StationLists lists = readStationLists(settings);
    qrg_->setPlainText(joined(lists.qrg));
    power_->setPlainText(joined(lists.power));
    antenna_->setPlainText(joined(lists.antenna));
    myLocator_->setPlainText(joined(lists.myLocator));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("OKButton");
    buttons->button(QDialogButtonBox::Cancel)->setText(QString::fromStdString(texts(364)));
    g->addWidget(buttons, 2, 0, 1, 4);
    connect(buttons, &QDialogButtonBox::accepted, this, &QjConfigDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void QjConfigDialog::accept() {
    StationLists lists{split(qrg_), split(power_), split(antenna_), split(myLocator_)};
    for (auto& l : lists.myLocator)
        for (auto& c : l)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    writeStationLists(settings_, lists);
    QDialog::accept();
}

} // namespace orv::ui
