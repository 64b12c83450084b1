#include "ui/eyediagram/SheetPage.h"

#include <QLineEdit>
#include <string>

#include "core/ports/MessagePort.h"

namespace kv::ui {

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
