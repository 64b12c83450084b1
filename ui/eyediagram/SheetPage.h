#pragma once

#include <QString>
#include <QWidget>

// A page of the eye-diagram sheet. The sheet asks the page before the user
// leaves it or confirms (OnKillActive), when the sheet is confirmed with OK
// (OnApply) and when it is cancelled (OnQueryCancel); a page that answers
// false keeps the sheet open.

namespace kv::ui {

class CSheetPage : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;

    virtual QString Title() const = 0;
    virtual bool OnKillActive() { return true; }
    virtual bool OnApply() { return true; }
    virtual bool OnQueryCancel() { return true; }
};

}  // namespace kv::ui
