#pragma once

#include <QDir>
#include <span>

#include "kvcomctl/kvcomctl.h"
#include "tests/soak/Driver.h"

namespace kv::soak {

// What one component's session works with.
struct Session {
    IKVComCtlFactory& factory;
    SoakRandom& random;
    Driver& driver;
    UserActions& actions;
    QDir files;  // the work folder's files, where hosts export and users pick
};

// Each component as a host uses it: created through the factory, filled with valid or hostile
// host data, opened again and again while the session has actions left, driven by the user,
// closed, and given back to the factory.
struct Component {
    const char* name;
    void (*run)(Session& session);
};
std::span<const Component> Components();

}  // namespace kv::soak
