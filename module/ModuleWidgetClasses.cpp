#include "module/ModuleWidgetClasses.h"

#include <vector>

#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/shared/WidgetClassRegistry.h"
#include "ui/via/ViaVisualizerCtrl.h"

namespace kv::module {
namespace {

struct WidgetClass {
    const char* name;
    ui::WidgetClassRegistry::Factory factory;
};

// Every widget class of the module that is referred to by name: "Velmorine
// Bit Pattern Editor", "Velmorine Via Visualizer", "TOPVIEW" and "Curvana
// Chart Control". Each joins this list together with its widget.
const std::vector<WidgetClass>& ModuleWidgetClasses() {
    static const std::vector<WidgetClass> classes{
        {ui::CBitPatternCtrl::kWidgetClassName,
         [](QWidget* parent) -> QWidget* { return new ui::CBitPatternCtrl(parent); }},
        {ui::CViaVisualizerCtrl::kWidgetClassName,
         [](QWidget* parent) -> QWidget* { return new ui::CViaVisualizerCtrl(parent); }},
        {ui::CPadTopViewCtrl::kWidgetClassName,
         [](QWidget* parent) -> QWidget* { return new ui::CPadTopViewCtrl(parent); }},
        {ui::CChartControl::kWidgetClassName,
         [](QWidget* parent) -> QWidget* { return new ui::CChartControl(parent); }},
    };
    return classes;
}

}  // namespace

void RegisterModuleWidgetClasses() {
    for (const WidgetClass& widgetClass : ModuleWidgetClasses()) {
        ui::WidgetClassRegistry::Instance().Register(widgetClass.name, widgetClass.factory);
    }
}

void UnregisterModuleWidgetClasses() {
    for (const WidgetClass& widgetClass : ModuleWidgetClasses()) {
        ui::WidgetClassRegistry::Instance().Unregister(widgetClass.name);
    }
}

}  // namespace kv::module
