#pragma once

// The widget classes the module registers by name at start-up, so that
// layouts and hosts can create them by that name.

namespace kv::module {

void RegisterModuleWidgetClasses();
void UnregisterModuleWidgetClasses();

}  // namespace kv::module
