#include "ui/shared/WidgetClassRegistry.h"

namespace kv::ui {

WidgetClassRegistry& WidgetClassRegistry::Instance() {
    static WidgetClassRegistry registry;
    return registry;
}

void WidgetClassRegistry::Register(const QString& className, Factory factory) {
    m_factories[className] = std::move(factory);
}

void WidgetClassRegistry::Unregister(const QString& className) {
    m_factories.erase(className);
}

bool WidgetClassRegistry::IsRegistered(const QString& className) const {
    return m_factories.contains(className);
}

QWidget* WidgetClassRegistry::Create(const QString& className, QWidget* parent) const {
    const auto found = m_factories.find(className);
    return found == m_factories.end() ? nullptr : found->second(parent);
}

}  // namespace kv::ui
