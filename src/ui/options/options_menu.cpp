#include "ui/options/options_menu.h"

#include <QAction>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>

#include "core/capture/capture.h"
#include "core/keying/audio.h"
#include "core/logstore/contest_log.h"
#include "platform/qt_audio_recorder.h"
#include "platform/qt_dialogs.h"
#include "platform/serial_key_line.h"
#include "ui/backup_binding.h"
#include "ui/main_window.h"
#include "ui/options/options_dialog.h"
#include "ui/remote_binding.h"
#include "ui/rig_binding.h"
#include "ui/startup.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QColor toQColor(Colour c) {
    return QColor(c.r, c.g, c.b);
}

QStringList qList(const std::vector<std::string>& v) {
    QStringList out;
    for (const std::string& s : v)
        out << q(s);
    return out;
}

} // namespace

OptionsMenu::OptionsMenu(Startup& startup) : QObject(startup.window()), s_(startup) {
    setObjectName("OptionsMenu");
    run = [](OptionsDialog& d) { d.exec(); };
    ports = [] {
        std::vector<PortOffer> out;
        for (const auto& d : platform::availableSerialDevices())
            out.push_back({d.path, d.description});
        return out;
    };
    openFile = [](QWidget* parent, const QString& title, const QString& filter) {
        return QFileDialog::getOpenFileName(parent, title, QString(), filter);
    };
    chooseFolder = [](QWidget* parent, const QString& title, const QString& start) {
        return QFileDialog::getExistingDirectory(parent, title, start);
    };
    chooseColour = [](QWidget* parent, const QColor& start) {
        return QColorDialog::getColor(start, parent);
    };
    input = [](QWidget* parent, const QString& prompt,
               const QString& proposal) -> std::optional<QString> {
        const auto typed = platform::QtDialogs::input(parent, prompt.toStdString(),
                                                      "OrvantaContest", proposal.toStdString());
        if (!typed)
            return std::nullopt;
        return q(*typed);
    };
    makeRecorder = [] { return std::make_unique<platform::QtAudioRecorder>(); };
    QAction* entry = s_.window()->findChild<QAction*>("MnOptionenA");
    entry->setEnabled(true);
    connect(entry, &QAction::triggered, this, &OptionsMenu::open);
}

OptionsMenu::~OptionsMenu() = default;

void OptionsMenu::open() {
    const std::unique_ptr<keying::AudioRecorder> recorder = makeRecorder();
    OptionsContext ctx{s_.texts(), s_.dialogs(), s_.clock(),   s_.paths(),   *recorder,
                       ports,      openFile,     chooseFolder, chooseColour, input};
    std::optional<ContestData> contest;
    if (s_.contest())
        contest = *s_.contest();
    OptionsDialog dialog(ctx, s_.settings(), contest, s_.window());
    run(dialog);
    if (dialog.result() != QDialog::Accepted)
        return;
    if (const auto& c = dialog.appliedContest()) {
        // The open log keeps its rules in `MyData` at once, not only on closing.
        if (s_.contest())
            *s_.contest() = *c;
        if (ContestLog* log = s_.log())
            log->writeContestData(c->ContestName, c->Zaehl);
        return;
    }
    apply();
}

void OptionsMenu::apply() {
    Settings& st = s_.settings();
    MainWindow* w = s_.window();
    FieldColours c;
    c.aktiv = toQColor(st.get(keys::FarbeAktiv));
    c.inAktiv = toQColor(st.get(keys::FarbeInAktiv));
    c.noEdit = toQColor(st.get(keys::FarbeNoEdit));
    c.bereitsQso = toQColor(st.get(keys::FarbeBereitsQSO));
    w->setFieldColours(c);
    w->setModeSwitch(st.get(keys::SSBCWFlip), q(st.get(keys::Mode2St)), q(st.get(keys::Mode3St)));
    // The lists change under the QSO in hand, which keeps its values.
    const EntryRow row = w->entryRow();
    w->setModes(qList(st.modes()));
    for (const auto& [box, mode] :
         {std::pair{"Combo3", &row.mode}, std::pair{"Combo2", &row.rxMode}})
        if (auto* b = w->findChild<QComboBox*>(box))
            b->setCurrentText(q(*mode));
    w->setPropagations(qList(st.list(section::AUSBR)), q(row.prop));
    QStringList ops;
    for (const OpCall& op : st.opCalls())
        ops << q(op.call);
    w->setOperators(ops, q(row.op));
    w->setZeitPlusMinus(static_cast<int>(st.get(keys::ZeitPlusMinus)));
    w->Beschriften();
    if (s_.capture() && s_.log())
        s_.capture()->setConfig(captureConfigFrom(st, s_.log()->myData()));
    if (auto* backup = w->findChild<BackupBinding*>("BackupBinding"))
        backup->LadeSichernOptionen();
    if (auto* remote = w->findChild<RemoteBinding*>("RemoteBinding"))
        remote->reloadPublishKeys(st);
    RigBinding::install(*w, st, s_.texts());
}

void installOptionsMenu(Startup& startup) {
    new OptionsMenu(startup);
}

} // namespace orv::ui
