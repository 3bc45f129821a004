#include "ui/edi_dialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <vector>

#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/submission/edi_editor.h"
#include "core/submission/edi_upload.h"
#include "core/submission/evaluation.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "ui/edi_editor.h"
#include "ui/edi_upload.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

constexpr int kRemarks = 35;
constexpr int kBandList = -1; // Combo2 in the order of the boxes

// One line of the dialog: its caption (text number and an optional line
// number) and its boxes in the order of the file.
struct EdiLine {
    int text;
    const char* suffix;
    std::vector<int> boxes;
};

const std::vector<EdiLine>& ediLines() {
    static const std::vector<EdiLine> lines{
        {100, "", {0}},          {101, "", {1, 11}},      {102, "", {2}},
        {103, "", {3}},          {104, "", {4}},          {105, "1", {5}},
        {105, "2", {6}},         {106, "", {7}},          {107, "", {kBandList}},
        {108, "", {8}},          {109, "", {9}},          {110, "", {10}},
        {113, "1", {12}},        {113, "2", {13}},        {114, "", {14}},
        {115, "", {15}},         {116, "", {16}},         {117, "", {17}},
        {118, "", {18}},         {119, "1", {19}},        {119, "2", {20}},
        {205, "", {40}},         {120, "", {21}},         {121, "", {22}},
        {122, "", {23}},         {123, "", {24, 36}},     {124, "", {25, 37}},
        {125, "", {26}},         {126, "", {27, 38, 39}}, {127, "", {28}},
        {128, "", {29, 41, 42}}, {129, "", {30}},         {190, "", {31, 43, 44}},
        {191, "", {32}},         {192, "", {33}},         {193, "", {34, 45, 46}},
        {194, "", {kRemarks}},
    };
    return lines;
}

// The order in which Enter walks the boxes: the order of the file.
const std::vector<int>& enterOrder() {
    static const std::vector<int> order = [] {
        std::vector<int> o;
        for (const EdiLine& l : ediLines())
            o.insert(o.end(), l.boxes.begin(), l.boxes.end());
        return o;
    }();
    return order;
}

} // namespace

EdiDialog::EdiDialog(Settings& settings, const Texts& texts, Dialogs& dialogs,
                     const AppPaths& paths, int band, EvaluateBand evaluateBand, QWidget* parent)
    : QDialog(parent), settings_(settings), texts_(texts), dialogs_(dialogs), paths_(paths),
      evaluateBand_(std::move(evaluateBand)) {
    setObjectName("Form6");
    setWindowTitle(q(texts_(511)));
    buildUi();

    // The opening: last contents, then what the log says, then the band's
    // template and figures, as core lays the order down.
    EdiBoxes b = ediLoadLast(settings_);
    ev_ = evaluateBand_ ? evaluateBand_(band) : nullptr;
    if (ev_) {
        ediFillOnOpen(*ev_, b);
        ediChooseBand(settings_, *ev_, b);
    }
    setBoxes(b);
    {
        const QSignalBlocker block(bandBox_);
        bandBox_->setCurrentIndex(band);
    }
    templateCaption();
}

void EdiDialog::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    auto* panel = new QWidget(scroll);
    auto* grid = new QGridLayout(panel);
    int row = 0;
    for (const EdiLine& line : ediLines()) {
        auto* caption = new QLabel(q(texts_(line.text)) + line.suffix, panel);
        caption->setWordWrap(true);
        grid->addWidget(caption, row, 0);
        auto* boxes = new QHBoxLayout;
        for (int i : line.boxes) {
            if (i == kBandList) {
                bandBox_ = new QComboBox(panel);
                bandBox_->setObjectName("Combo2");
                for (std::string_view t : kPBandTexts)
                    bandBox_->addItem(
                        QString::fromUtf8(t.data(), static_cast<qsizetype>(t.size())));
                bandBox_->installEventFilter(this);
                boxes->addWidget(bandBox_);
            } else if (i == kRemarks) {
                remarks_ = new QPlainTextEdit(panel);
                remarks_->setObjectName("Text1(35)");
                remarks_->setFixedHeight(80);
                boxes->addWidget(remarks_);
            } else {
                auto* e = new QLineEdit(panel);
                e->setObjectName(QString("Text1(%1)").arg(i));
                e->installEventFilter(this);
                lines_[static_cast<std::size_t>(i)] = e;
                boxes->addWidget(e);
            }
        }
        grid->addLayout(boxes, row, 1);
        ++row;
    }
    grid->setColumnStretch(1, 1);
    scroll->setWidget(panel);
    outer->addWidget(scroll, 1);
    connect(bandBox_, &QComboBox::currentIndexChanged, this, &EdiDialog::chooseBand);

    auto* buttons = new QHBoxLayout;
    auto* write = new QPushButton(q(texts_(97)), this);
    write->setObjectName("Command1");
    write->setAutoDefault(false);
    connect(write, &QPushButton::clicked, this, &EdiDialog::writeFile);
    auto* cancel = new QPushButton(q(texts_(11)), this);
    cancel->setObjectName("Command2");
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    templateButton_ = new QPushButton(this);
    templateButton_->setObjectName("Command3");
    templateButton_->setAutoDefault(false);
    connect(templateButton_, &QPushButton::clicked, this, &EdiDialog::saveTemplate);
    auto* upload = new QPushButton(q(uploadCaption(texts_, settings_.get(keys::UploadHost))), this);
    upload->setObjectName("Command4");
    upload->setAutoDefault(false);
    connect(upload, &QPushButton::clicked, this, &EdiDialog::upload);
    for (QPushButton* b : {write, cancel, templateButton_, upload})
        buttons->addWidget(b);
    outer->addLayout(buttons);
    resize(900, 700);
}

QWidget* EdiDialog::box(int i) const {
    if (i == kBandList)
        return bandBox_;
    if (i == kRemarks)
        return remarks_;
    return lines_[static_cast<std::size_t>(i)];
}

EdiBoxes EdiDialog::boxes() const {
    EdiBoxes b;
    for (int i = 0; i < kEdiBoxes; ++i)
        b[static_cast<std::size_t>(i)] =
            i == kRemarks ? remarks_->toPlainText().toStdString()
                          : lines_[static_cast<std::size_t>(i)]->text().toStdString();
    return b;
}

void EdiDialog::setBoxes(const EdiBoxes& b) {
    for (int i = 0; i < kEdiBoxes; ++i) {
        const QString t = q(b[static_cast<std::size_t>(i)]);
        if (i == kRemarks)
            remarks_->setPlainText(t);
        else
            lines_[static_cast<std::size_t>(i)]->setText(t);
    }
}

int EdiDialog::band() const {
    return bandBox_->currentIndex();
}

void EdiDialog::templateCaption() {
    templateButton_->setText(q(texts_(219)) + "\n" + q(std::string(pBandText(band()))));
}

void EdiDialog::chooseBand(int b) {
    if (b < 0 || b >= kBandCount)
        return;
    EdiBoxes now = boxes();
    ev_ = evaluateBand_ ? evaluateBand_(b) : nullptr;
    if (ev_)
        ediChooseBand(settings_, *ev_, now);
    else
        ediApplyTemplate(settings_, b, now);
    setBoxes(now);
    templateCaption();
}

std::string EdiDialog::cwMode() const {
    // Read without rebuilding the mode list: an export writes nothing into
    // the settings file besides the boxes.
    const auto modes = settings_.list(section::MODE);
    return modes.size() >= 2 ? text::trim(modes[1]) : std::string("CW");
}

void EdiDialog::writeFile() {
    if (!ev_)
        return;
    const EdiBoxes b = boxes();
    const std::string cw = cwMode();
    auto refuse = [&](const Failure& f) {
        if (f.text == 202) {
            dialogs_.inform(f.detail + " " + texts_(202), Icon::Information);
            return;
        }
        dialogs_.inform(texts_(f.text), Icon::Critical);
        if (QWidget* w = findChild<QWidget*>(q(f.field)))
            w->setFocus(Qt::OtherFocusReason);
    };
    // Every refusal comes before the question for the file.
    if (const Result<std::string> check = ediText(*ev_, b, cw); !check) {
        refuse(check.failure());
        return;
    }
    const auto chosen = SubmissionHooks::saveFile(this, q(texts_(182)), "*.edi", paths_.logsPath());
    if (chosen.empty())
        return;
    try {
        const Result<std::filesystem::path> written = writeEdi(chosen, *ev_, b, cw);
        if (!written) {
            refuse(written.failure());
            return;
        }
        dialogs_.inform(savedMessage(texts_, *written), Icon::Information);
        afterWriting(*written);
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

void EdiDialog::afterWriting(const std::filesystem::path& written) {
    EdiSession& session = ediSession(this);
    bool edit =
        dialogs_.ask(texts_(366), Buttons::YesNo, Icon::Question, Answer::Yes) == Answer::Yes;
    std::error_code ec;
    if (std::filesystem::file_size(written, ec) > kEdiEditorLimit || ec) {
        dialogs_.inform(texts_(367), Icon::Information);
        session.editorPath.clear();
        edit = false;
    }
    if (edit) {
        try {
            const Result<EdiEditorText> loaded = loadEdiEditor(written);
            if (loaded) {
                session.editorPath = written;
                session.editorText = *loaded;
                EdiEditor editor(session, texts_, dialogs_, paths_, this);
                SubmissionHooks::runModal(editor);
            }
        } catch (const fileio::FileError& e) {
            dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        }
    }
    // Enter does not send: the upload needs the connection the question warns of.
    if (dialogs_.ask(texts_(324) + "\n" + texts_(325), Buttons::YesNoCancel, Icon::Question,
                     Answer::No) == Answer::Yes) {
        uploadPath_ = written;
        upload();
    }
}

void EdiDialog::upload() {
    sendEdiFile(this, settings_, texts_, dialogs_, paths_, uploadPath_);
}

void EdiDialog::saveTemplate() {
    ediSaveTemplate(settings_, band(), boxes());
}

void EdiDialog::done(int r) {
    // However the dialog closes, the boxes are kept for the next time.
    ediSaveLast(settings_, boxes());
    QDialog::done(r);
}

bool EdiDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(event);
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            const auto& order = enterOrder();
            for (std::size_t i = 0; i + 1 < order.size(); ++i) {
                if (box(order[i]) == watched) {
                    box(order[i + 1])->setFocus(Qt::TabFocusReason);
                    return true;
                }
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace orv::ui
