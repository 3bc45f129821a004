#include "ui/options/hamlib_pages.h"

#include <QVBoxLayout>

#include "ui/options/rig_page.h"
#include "ui/options/rotator_page.h"

namespace orv::ui {
namespace {

template <class Page> class HamlibOptionsPage final : public OptionsPage {
public:
    HamlibOptionsPage(OptionsContext& ctx, const char* name, int titleRow, QWidget* parent)
        : OptionsPage(ctx, name, titleRow, parent), page_(new Page(ctx.texts, this)) {
        auto* v = new QVBoxLayout(this);
        v->setContentsMargins(0, 0, 0, 0);
        v->addWidget(page_);
    }
    void load(const Settings& s) override { page_->load(s); }
    Status validate() override {
        if (auto f = page_->validate())
            return *f;
        return okStatus();
    }
    void save(Settings& s) override { page_->save(s); }

private:
    Page* page_;
};

} // namespace

OptionsPage* makeRotatorOptionsPage(OptionsContext& ctx, QWidget* parent) {
    return new HamlibOptionsPage<RotatorPage>(ctx, "RotatorOptions", 1220, parent);
}

OptionsPage* makeRigOptionsPage(OptionsContext& ctx, QWidget* parent) {
    return new HamlibOptionsPage<RigPage>(ctx, "RigOptions", 1221, parent);
}

} // namespace orv::ui
