#include "apps/python/Bindings.h"
#include "core/shared/AppProfile.h"

// The `kvcomctl` Python module over the core: sequences, the 8B/10B check, .bit files,
// engineering numbers, chart axes, eyes, the stimulus data and its waveform, and the via
// exports. The package's __init__.py re-exports everything defined here.

PYBIND11_MODULE(_core, m) {
    m.doc() = "Signal-integrity data objects, bit sequences and exports of KVComCtl.";
    // The module's own settings store (the jitter seed of 8B/10B data, load and save without a
    // location) is the one the library uses inside a host.
    kv::EnsureModuleRegistryKey();
    kv::python::BindSequences(m);
    kv::python::BindNumbers(m);
    kv::python::BindStimulus(m);
    kv::python::BindVia(m);
    kv::python::BindAxis(m);
    kv::python::BindEye(m);
    kv::python::BindWaveform(m);
}
