#pragma once

#include <QLineEdit>
#include <QString>
#include <QWidget>
#include <map>
#include <optional>

// A page of the eye-diagram sheet. The sheet asks the page before the user
// leaves it or confirms (OnKillActive), when the sheet is confirmed with OK
// (OnApply) and when it is cancelled (OnQueryCancel); a page that answers
// false keeps the sheet open.

namespace kv::ui {

class CSheetPage : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    ~CSheetPage() override;

    virtual QString Title() const = 0;
    virtual bool OnKillActive() { return true; }
    virtual bool OnApply() { return true; }
    virtual bool OnQueryCancel() { return true; }

protected:
    // Puts the user back into the field the page's model refused: focused, with the typed text
    // selected. No id, or one without a field, leaves the focus where it is.
    void ReturnTo(std::optional<int> controlId) {
        if (const auto field = controlId ? m_fields.find(*controlId) : m_fields.end();
            field != m_fields.end()) {
            field->second->setFocus();
            field->second->selectAll();
        }
    }

    // The page's text fields by control id.
    std::map<int, QLineEdit*> m_fields;
};

}  // namespace kv::ui
