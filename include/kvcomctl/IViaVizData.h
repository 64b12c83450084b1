#pragma once

#include <cstdint>

#include "kvcomctl/ViaRecords.h"

// The data of one via as the via visualizer reads it: the stackup and the
// padstack. The host fills both records in place through the pointers it gets
// here; the object owns the arrays placed in them (see ViaRecords.h) and frees
// them when it is destroyed. The order of the operations is the order of the
// virtual table the host binds to: never reorder, insert or remove one.
class IViaVizData {
public:
    virtual STACKUPARRAY* GetStackup() = 0;  // 1
    virtual PADSTACK* GetPadstack() = 0;     // 2
    virtual void* GetViaReference() = 0;     // 3: none, null
    virtual int32_t GetViaCount() = 0;       // 4: 0
    virtual void* GetNetReference() = 0;     // 5: none, null
    virtual double GetFirstValue() = 0;      // 6
    virtual double GetSecondValue() = 0;     // 7
    virtual double GetThirdValue() = 0;      // 8: 0.0
    virtual bool GetFlag() = 0;              // 9
    virtual ~IViaVizData() = default;        // 10: frees the pad and stackup arrays
};
