#pragma once

#include <QString>
#include <QWidget>
#include <string_view>

class QLineEdit;

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
    // Says why the value typed into `field` was refused and puts the user
    // back into it; the typed text stays until it is put right. `filling` is
    // raised while the box is up, so the page's change handlers stay quiet.
    static void RefuseField(QLineEdit& field, std::string_view problem, std::string_view caption,
                            bool& filling);
};

}  // namespace kv::ui
