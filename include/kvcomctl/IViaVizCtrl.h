#pragma once

#include <cstdint>
#include <type_traits>

#include "kvcomctl/IViaVizData.h"

// The via visualizer control as the host sees it: a window that draws one via, or the two vias
// of a differential pair, through the stackup (side view) or one layer's pad from above (top
// view), and writes the vias' electrical model as a SPICE subcircuit. Operation order is the
// virtual-table order the host binds to. Texts are UTF-8; window handles are widgets.

class QWidget;

// One lumped element of a via's electrical model, as the export reads it.
struct VIAELEMENT {
    int32_t kind;  // 1 series inductance, 4 line piece, others carry end capacitances only
    int32_t startEndType, endEndType;         // 2: a shunt capacitance sits at that end
    int32_t startLayer, endLayer;             // stackup indices
    double value;                             // henries (kind 1) or ohms Z0 (kind 4)
    double startCapacitance, endCapacitance;  // farads
    double delay;                             // seconds (kind 4)
};

static_assert(std::is_standard_layout_v<VIAELEMENT> && std::is_trivially_copyable_v<VIAELEMENT>);

class IViaVizCtrl {
public:
    virtual bool Create(QWidget* parent, int32_t id) = 0;                                  // 0
    virtual QWidget* GetWindow() const = 0;                                                // 1
    virtual IViaVizData* GetViaData(int32_t via) = 0;                                      // 2
    virtual void SetPair(bool pair) = 0;                                                   // 3
    virtual bool IsPair() const = 0;                                                       // 4
    virtual void SetElements(int32_t via, const VIAELEMENT* elements, int32_t count) = 0;  // 5
    virtual void SetPorts(int32_t via, const int32_t* layers, int32_t count) = 0;          // 6
    virtual void SetNames(const char* subcircuit, const char* baseName,
                          const char* exportFile) = 0;     // 7
    virtual void SetMetric(bool metric) = 0;               // 8
    virtual void SetView(int32_t view) = 0;                // 9: 0 side, 1 top
    virtual void SetTopViewLayer(int32_t layer) = 0;       // 10
    virtual void Refresh() = 0;                            // 11
    virtual bool ExportToSpice() = 0;                      // 12
    virtual bool ExportToSpiceFile(const char* path) = 0;  // 13

protected:
    ~IViaVizCtrl() = default;
};
