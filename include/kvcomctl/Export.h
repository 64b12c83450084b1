#pragma once

// The library exports exactly one symbol, GetKVComCtlFactory; everything else
// is built with hidden visibility. A host includes this header unchanged and
// gets the import form of the declaration.

#if defined(_WIN32)
#if defined(KVCOMCTL_BUILDING_LIBRARY)
#define KVCOMCTL_API __declspec(dllexport)
#else
#define KVCOMCTL_API __declspec(dllimport)
#endif
#else
#define KVCOMCTL_API __attribute__((visibility("default")))
#endif
