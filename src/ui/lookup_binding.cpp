#include "ui/lookup_binding.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QTimer>
#include <limits>
#include <set>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "ui/calldb_editor.h"
#include "ui/main_window.h"

namespace orv::ui {

// What one search found, computed away from the window's thread.
struct LookupBinding::Outcome {
    Kind kind = Kind::Call;
    std::uint64_t generation = 0;
    std::shared_ptr<const QBDatImage> image;
    CallSearchResult result;
    std::string callPart;
    std::string locPart;
    // The calls of every record that the locator part alone finds; they
    // filter the worked-before lines of a call search.
    std::set<std::string> locatorCalls;
};

namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

std::string typedText(const QLineEdit* e) {
    return text::upper(text::trim(e->text().toStdString()));
}

// The keys that walk the list; they do not change the text.
bool isListKey(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown;
}

} // namespace

LookupBinding::LookupBinding(MainWindow& window, const AppPaths& paths, const Texts& texts,
                             Dialogs& dialogs, std::function<Capture*()> capture)
    : QObject(&window), window_(window), paths_(paths), texts_(texts), dialogs_(dialogs),
      capture_(std::move(capture)), image_(std::make_shared<QBDatImage>()) {
    setObjectName("LookupBinding");
    pool_.setMaxThreadCount(1);
    call_ = window_.findChild<QLineEdit*>("Text3");
    locator_ = window_.findChild<QLineEdit*>("Text7");
    list_ = window_.findChild<QListWidget*>("List1");
    menu_ = window_.findChild<QMenu*>("MnList1");

    // The counter stands above the list it counts.
    found_ = new QLabel(list_->parentWidget());
    found_->setObjectName("Label11");
    if (auto* box = qobject_cast<QBoxLayout*>(list_->parentWidget()->layout())) {
        const int at = box->indexOf(list_);
        box->insertWidget(at < 0 ? box->count() : at, found_);
    }

    timer2_ = new QTimer(this);
    timer2_->setObjectName("Timer2");
    timer2_->setSingleShot(true);
    timer2_->setInterval(500);
    connect(timer2_, &QTimer::timeout, this, [this] { startSearch(Kind::Call); });
    timer8_ = new QTimer(this);
    timer8_->setObjectName("Timer8");
    timer8_->setSingleShot(true);
    timer8_->setInterval(1);
    connect(timer8_, &QTimer::timeout, this, [this] { startSearch(Kind::Locator); });

    call_->installEventFilter(this);
    locator_->installEventFilter(this);

    connect(list_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        list_->setCurrentItem(item);
        takeRow(Qt::Key_F8);
    });
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &QWidget::customContextMenuRequested, this, &LookupBinding::contextMenu);
    if (menu_) {
        auto bind = [this](const char* name, auto fn) {
            if (auto* a = menu_->findChild<QAction*>(name)) {
                a->setEnabled(true);
                connect(a, &QAction::triggered, this, fn);
            }
        };
        bind("MnCallADD", [this] { takeCallOnly(); });
        bind("MnLocatorADD", [this] { takeRow(Qt::Key_F9); });
        bind("MnCallLocADD", [this] { takeRow(Qt::Key_F8); });
        bind("MnEditList1", [this] { noteForEditor(); });
    }
    reload();
}

LookupBinding::~LookupBinding() {
    // A load in flight stops at its next check; a search in flight sees the
    // generation move on. Neither result is delivered, since this object is
    // their receiver.
    loader_.reset();
    generation_.next();
    pool_.waitForDone();
}

void LookupBinding::reload() {
    // The database changed: what is in memory is never searched again.
    generation_.next();
    loader_.reset();
    image_ = std::make_shared<const QBDatImage>();
    found_->setText(q(texts_(1200)));
    loading_ = true;
    const std::uint64_t number = ++loadNumber_;
    loader_ = std::make_unique<CallImageLoader>(
        paths_.callDbPath(),
        [this, number](CallImageLoader::Outcome o) {
            QMetaObject::invokeMethod(
                this, [this, number, o = std::move(o)] { loaded(number, o); },
                Qt::QueuedConnection);
        },
        beforeLoad);
}

std::shared_ptr<const QBDatImage> LookupBinding::readyImage() {
    if (loading_) {
        loader_->wait();
        // The outcome waits in this object's queue: take it now.
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    return image_;
}

void LookupBinding::loaded(std::uint64_t number, const CallImageLoader::Outcome& o) {
    if (number != loadNumber_)
        return;
    loading_ = false;
    image_ = o.image ? o.image : std::make_shared<const QBDatImage>();
    if (found_->text() == q(texts_(1200)))
        found_->clear();
    emit imageLoaded();
    if (!o.error.empty()) {
        pending_.reset();
        dialogs_.inform(texts_(10) + "\n" + o.error, Icon::Critical);
        return;
    }
    // The key typed while the list was loading is answered now.
    if (const auto kind = std::exchange(pending_, std::nullopt))
        startSearch(*kind);
}

void LookupBinding::offerReload() {
    if (dialogs_.ask(texts_(260), Buttons::YesNo, Icon::Question, Answer::Yes) == Answer::Yes)
        reload();
}

QString LookupBinding::callOfLine(const QString& line) {
    return QString::fromStdString(listLineCall(line.toStdString()));
}

QString LookupBinding::locatorOfLine(const QString& line) {
    return QString::fromStdString(listLineLocator(line.toStdString()));
}

bool LookupBinding::eventFilter(QObject* watched, QEvent* event) {
    if (watched != call_ && watched != locator_)
        return QObject::eventFilter(watched, event);
    const Kind kind = watched == call_ ? Kind::Call : Kind::Locator;
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto* e = static_cast<QKeyEvent*>(event);
        // Typing runs ahead of the search: the next key stops it.
        timer2_->stop();
        timer8_->stop();
        generation_.next();
        if (kind == Kind::Call && isListKey(e->key()) && e->modifiers() == Qt::NoModifier) {
            moveSelection(e->key());
            return true;
        }
        break;
    }
    case QEvent::KeyRelease: {
        auto* e = static_cast<QKeyEvent*>(event);
        if (e->isAutoRepeat())
            break;
        const int k = e->key();
        if (isListKey(k) || k == Qt::Key_F9 || k == Qt::Key_Shift || k == Qt::Key_Control)
            break;
        typed(kind);
        break;
    }
    case QEvent::FocusIn:
        typed(kind);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void LookupBinding::typed(Kind kind) {
    if (kind == Kind::Call) {
        const std::string t = typedText(call_);
        callText_ = q(t);
        const std::size_t n = text::length(t);
        if (n < 2)
            return;
        // More than two characters narrow the list enough to search at once;
        // two wait for the next key.
        timer2_->setInterval(n > 2 ? 1 : 500);
        timer2_->start();
        return;
    }
    const std::string t = typedText(locator_);
    locText_ = q(t);
    if (text::length(t) >= 4) {
        timer8_->setInterval(1);
        timer8_->start();
    }
}

void LookupBinding::startSearch(Kind kind) {
    Outcome base;
    base.kind = kind;
    base.image = image_;
    base.callPart = typedText(call_);
    base.locPart = typedText(locator_);
    // A locator narrows the call search only once it has four characters,
    // and a call narrows the locator search from two on.
    if (text::length(base.locPart) < 4)
        base.locPart.clear();
    if (kind == Kind::Locator && text::length(base.callPart) < 2)
        base.callPart.clear();
    if (kind == Kind::Locator && base.locPart.empty())
        return;
    if (kind == Kind::Call && text::length(base.callPart) < 2)
        return;
    if (loading()) {
        pending_ = kind;
        found_->setText(q(texts_(1200)));
        return;
    }
    base.generation = generation_.next();
    const CancelToken cancel(generation_, base.generation);
    pool_.start([this, cancel, o = std::move(base)]() mutable {
        CallSearch query{o.callPart, o.locPart, kMaxListLines};
        o.result = o.image->search(query, cancel);
        if (o.kind == Kind::Call && !o.locPart.empty() && !cancel.cancelled()) {
            CallSearch byLocator{{}, o.locPart, std::numeric_limits<std::size_t>::max()};
            const auto all = o.image->search(byLocator, cancel);
            for (auto n : all.records)
                o.locatorCalls.emplace(o.image->record(n).Call());
        }
        if (cancel.cancelled())
            return;
        QMetaObject::invokeMethod(
            this, [this, o = std::move(o)] { show(o); }, Qt::QueuedConnection);
    });
}

void LookupBinding::show(const Outcome& o) {
    // A key stroke since the start made this result useless.
    if (o.generation != generation_.current() || o.result.cancelled)
        return;
    QStringList lines;
    lines.reserve(static_cast<int>(o.result.records.size()));
    for (auto n : o.result.records)
        lines << q(o.image->WriteInList(n));
    if (const Capture* c = capture_ ? capture_() : nullptr) {
        std::vector<std::string> worked;
        if (o.kind == Kind::Call)
            worked =
                c->workedBeforeLines(o.callPart, o.locPart.empty() ? nullptr : &o.locatorCalls);
        else
            worked = c->workedBeforeLinesByLocator(o.locPart, o.callPart);
        for (const auto& w : worked)
            lines << q(w);
    }
    list_->setUpdatesEnabled(false);
    list_->clear();
    list_->addItems(lines);
    if (!lines.isEmpty())
        list_->setCurrentRow(0);
    list_->setUpdatesEnabled(true);
    found_->setText(QString::fromStdString(texts_(504)).arg(o.result.found));
    emit listShown();
}

void LookupBinding::moveSelection(int key) {
    const int rows = list_->count();
    if (rows == 0)
        return;
    int row = std::max(list_->currentRow(), 0);
    switch (key) {
    case Qt::Key_PageUp:
        row = row >= 14 ? row - 14 : 0;
        break;
    case Qt::Key_PageDown:
        row = std::min(row + 14, rows - 1);
        break;
    case Qt::Key_Up:
        row = std::max(row - 1, 0);
        break;
    case Qt::Key_Down:
        row = std::min(row + 1, rows - 1);
        break;
    default:
        return;
    }
    list_->setCurrentRow(row);
}

void LookupBinding::contextMenu(const QPoint& pos) {
    QListWidgetItem* item = list_->itemAt(pos);
    if (!item || !menu_)
        return;
    list_->setCurrentItem(item);
    menu_->popup(list_->viewport()->mapToGlobal(pos));
}

void LookupBinding::takeRow(int key) {
    // A click and the menu take the selected row as F8 and F9 do.
    window_.takeLookupLine(key == Qt::Key_F8, false);
}

void LookupBinding::takeCallOnly() {
    const QListWidgetItem* item = list_->currentItem();
    if (!item)
        return;
    auto* field = window_.editLineOpen() ? window_.findChild<QLineEdit*>("Text33") : call_;
    if (!field)
        return;
    field->setText(callOfLine(item->text()));
    field->setFocus(Qt::OtherFocusReason);
    field->selectAll();
}

void LookupBinding::noteForEditor() {
    const QListWidgetItem* item = list_->currentItem();
    if (!item)
        return;
    try {
        orv::ui::noteForEditor(paths_, callOfLine(item->text()).toStdString(),
                               locatorOfLine(item->text()).toStdString());
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

} // namespace orv::ui
