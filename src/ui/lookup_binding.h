#pragma once

#include <QObject>
#include <QThreadPool>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/reference/call_image.h"
#include "core/reference/call_image_loader.h"

class QLabel;
class QListWidget;
class QLineEdit;
class QMenu;
class QTimer;

namespace orv {
class Capture;
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

// The lookup list `List1` beside the entry row: the call database in memory,
// searched while the call (`Timer2`) or the locator (`Timer8`) is typed, with
// the found counter `Label11` and the worked-before lines of the band.
//
// The search runs on a worker thread over an image that nobody changes; each
// key stroke takes a new search generation, which stops a search in flight,
// and a result that arrives for an old generation is thrown away. Typing
// therefore never waits for the list.
//
// The image itself is loaded on a loader thread: the window takes keys at
// once, the found counter says that the list is loading, and the search of
// the last key typed meanwhile runs as soon as the image is there. Usually
// the load maps the image file beside the database and is done within
// milliseconds; after a change of the database it is built anew.
class LookupBinding final : public QObject {
    Q_OBJECT
public:
    // `capture` gives the capture of the open log, or null.
    LookupBinding(MainWindow& window, const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                  std::function<Capture*()> capture);
    ~LookupBinding() override;

    // Load: reads the call database into memory anew, on the loader thread.
    // From here on the old image is no longer searched. A file that cannot
    // be read leaves an empty image and shows the reason.
    void reload();
    bool loading() const { return loading_; }
    // After a change of the database: IText(260), and the reload on Yes.
    void offerReload();
    // The image as it stands: empty while a load runs.
    std::shared_ptr<const QBDatImage> image() const { return image_; }
    // The image once the load in flight is done: for work that cannot do
    // without the database (the comparison), which then waits for it.
    std::shared_ptr<const QBDatImage> readyImage();

    // Runs on the loader's thread before a load reads anything; tests hold
    // a load there to type while it runs.
    static inline std::function<void()> beforeLoad;

    // The lines shown at most; the counter counts every record found.
    static constexpr std::size_t kMaxListLines = 500;

    // The entries of the list's context menu, also used by the comparison.
    static QString callOfLine(const QString& line);
    static QString locatorOfLine(const QString& line);

signals:
    // A search result is in the list.
    void listShown();
    // The image of a load is in place (or the load failed).
    void imageLoaded();

private:
    enum class Kind { Call, Locator };
    struct Outcome;

    bool eventFilter(QObject* watched, QEvent* event) override;
    void typed(Kind kind);
    void startSearch(Kind kind);
    void show(const Outcome& outcome);
    void loaded(std::uint64_t load, const CallImageLoader::Outcome& outcome);
    void moveSelection(int key);
    void contextMenu(const QPoint& pos);
    void takeRow(int key);
    void takeCallOnly();
    void noteForEditor();

    MainWindow& window_;
    AppPaths paths_;
    const Texts& texts_;
    Dialogs& dialogs_;
    std::function<Capture*()> capture_;
    std::shared_ptr<const QBDatImage> image_;

    QLineEdit* call_ = nullptr;
    QLineEdit* locator_ = nullptr;
    QListWidget* list_ = nullptr;
    QLabel* found_ = nullptr;
    QMenu* menu_ = nullptr;
    QTimer* timer2_ = nullptr;
    QTimer* timer8_ = nullptr;
    QString callText_;
    QString locText_;

    SearchGeneration generation_;
    QThreadPool pool_;
    // The last load, its number (an outcome of an earlier one is dropped)
    // and the search a key asked for meanwhile. The loader outlives its
    // outcome while it writes the image file.
    std::unique_ptr<CallImageLoader> loader_;
    bool loading_ = false;
    std::uint64_t loadNumber_ = 0;
    std::optional<Kind> pending_;
};

} // namespace orv::ui
