#pragma once

#include <array>
#include <functional>
#include <string_view>

#include "ui/options/options_page.h"

class QListWidget;

namespace orv::ui {

// A page that edits one list section of the settings file with three
// buttons: add, change the selected entry, delete it after a question. An
// entry is asked for in an input box and checked before it goes in.
class ListPage final : public OptionsPage {
    Q_OBJECT
public:
    struct Definition {
        const char* objectName;
        int titleRow;
        std::string_view section;
        int promptRow;
        // The names of the add, change and delete buttons.
        std::array<const char*, 3> buttons;
        std::function<Status(std::string_view)> check;
    };
    ListPage(OptionsContext& ctx, Definition def, QWidget* parent);
    void load(const Settings& s) override;
    void save(Settings& s) override;

private:
    void add();
    void change();
    void remove();
    std::optional<QString> ask(const QString& proposal);

    Definition def_;
    QListWidget* list_ = nullptr;
};

// The MODE list: names of one to five characters (IText(178)).
ListPage* makeModePage(OptionsContext& ctx, QWidget* parent);
// The propagation list `AUSBR` with `Command13` to `Command15`.
ListPage* makePropagationPage(OptionsContext& ctx, QWidget* parent);

} // namespace orv::ui
