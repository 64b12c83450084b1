#pragma once

#include "kvcomctl/kvcomctl.h"

// A Qt host's test program: QtHostMain.cpp makes the QApplication, loads the
// built library with dlopen once for all tests, and fills these in.

namespace kv::test {

extern void* g_hostLibrary;          // the dlopen handle
extern IKVComCtlFactory* g_factory;  // the library's one factory

}  // namespace kv::test
