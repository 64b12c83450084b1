#include "ui/eyediagram/SheetPage.h"

#include <QLineEdit>
#include <string>

#include "core/ports/MessagePort.h"

namespace kv::ui {

// A page shown on its own is hidden by QWidget's destructor, after the page's
// fields and model are gone; the field that had the focus then finishes its
// editing, and the page's handlers must not hear it.
CSheetPage::~CSheetPage() {
    for (QObject* child : findChildren<QObject*>()) {
        disconnect(child, nullptr, this, nullptr);
    }
}

void CSheetPage::RefuseField(QLineEdit& field, std::string_view problem, std::string_view caption,
                             bool& filling) {
    MessageRequest request;
    request.text = std::string(problem);
    request.caption = std::string(caption);
    request.icon = MessageIcon::Warning;
    filling = true;
    ShowMessage(request);
    filling = false;
    field.setFocus();
    field.selectAll();
}

}  // namespace kv::ui
