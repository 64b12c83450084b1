#pragma once

#include <QString>
#include <functional>
#include <map>

class QWidget;

// Layouts and hosts refer to some of the module's widgets by a class name
// ("Velmorine Bit Pattern Editor", ...). The registry maps each name to a
// function that creates the widget; start-up registers every widget class
// the module has.

namespace kv::ui {

class WidgetClassRegistry {
public:
    using Factory = std::function<QWidget*(QWidget* parent)>;

    static WidgetClassRegistry& Instance();

    // Replaces any earlier registration of the same name.
    void Register(const QString& className, Factory factory);
    void Unregister(const QString& className);
    bool IsRegistered(const QString& className) const;
    // A new widget of the class, owned by `parent` (null when unknown).
    QWidget* Create(const QString& className, QWidget* parent) const;

private:
    std::map<QString, Factory> m_factories;
};

}  // namespace kv::ui
