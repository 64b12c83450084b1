#pragma once

#include <cstdint>

#include "kvcomctl/IViaVizData.h"
#include "kvcomctl/ViaRecords.h"

// The padstack editor as the host sees it: a modal dialog that edits the padstack of a via's
// data against its stackup. Lengths are metres. The order of the operations is the order of
// the virtual table the host binds to.

class QWidget;

class IPadstackEditorCtrl {
public:
    // Edits data->GetPadstack() against data->GetStackup() in a modal dialog over `parent`.
    // Writes drill, span and every pad back into the records only on OK, and answers 1 then,
    // 0 on Cancel. A null data pointer or an empty stackup answers 0 and changes nothing, as
    // does data of the host's own whose pad array holds fewer pads than the stackup has layers
    // (the library's own via data grows its array instead).
    virtual int32_t Edit(QWidget* parent, IViaVizData* data) = 0;  // 0: modal
    virtual void SetMetric(bool metric) = 0;                       // 1
    virtual void SetMaxPadSize(double metres) = 0;                 // 2
    // The stackup indices of the layers that vias of this padstack already connect to: the
    // layer span must keep them.
    virtual void SetUsedLayers(const int32_t* layers, int32_t count) = 0;  // 3
    virtual void SetDefaultPad(const PADDATA* pad) = 0;                    // 4
    virtual bool GetDefaultPad(PADDATA* pad) const = 0;                    // 5
    // Whether the last Edit ended with OK and changed the padstack.
    virtual bool IsModified() const = 0;  // 6

protected:
    ~IPadstackEditorCtrl() = default;
};
