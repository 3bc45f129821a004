#include "ui/options/options_page.h"

namespace orv::ui {

QString OptionsContext::t(int row) const {
    return QString::fromStdString(texts(row));
}

QString OptionsContext::plain(int row) const {
    return t(row).remove('&');
}

OptionsPage::OptionsPage(OptionsContext& ctx, const char* objectName, int titleRow, QWidget* parent)
    : QWidget(parent), ctx_(ctx), titleRow_(titleRow) {
    setObjectName(objectName);
}

} // namespace orv::ui
