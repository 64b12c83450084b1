#include "ui/eyediagram/SheetPage.h"

namespace kv::ui {

// A page shown on its own is hidden by QWidget's destructor, after the page's
// fields and model are gone; the field that had the focus then finishes its
// editing, and the page's handlers must not hear it.
CSheetPage::~CSheetPage() {
    for (QObject* child : findChildren<QObject*>()) {
        disconnect(child, nullptr, this, nullptr);
    }
}

}  // namespace kv::ui
