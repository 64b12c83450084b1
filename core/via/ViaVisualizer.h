#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/ports/Canvas.h"
#include "core/ports/FileChooser.h"
#include "core/via/ViaSideView.h"
#include "core/via/ViaSpiceExport.h"
#include "core/via/ViaVizData.h"
#include "kvcomctl/IViaVizCtrl.h"

// What the via visualizer control holds and decides, apart from its window: the data of one
// via or of a differential pair, each via's electrical model, the names its export uses, the
// view shown, and both exports. The widget hands it sizes, the mouse and the canvas.

namespace kv {

enum class ViaView { Side = 0, Top = 1 };

class ViaVisualizer {
public:
    static constexpr int kMaxVias = 2;

    // Via 0, and via 1 while the control shows a pair; null for any other index.
    CViaVizData* ViaData(int32_t via);
    void SetPair(bool pair) {
        m_pair = pair;
        Invalidate();
    }
    bool IsPair() const { return m_pair; }
    // Copies. Null with a count of 0 empties; a negative count, null with a positive count or
    // a via other than 0 and 1 is ignored (false).
    bool SetElements(int32_t via, const VIAELEMENT* elements, int32_t count);
    bool SetPorts(int32_t via, const int32_t* layers, int32_t count);
    // Null names are empty.
    void SetNames(const char* subcircuit, const char* baseName, const char* exportFile);
    void SetMetric(bool metric) {
        m_metric = metric;
        Invalidate();
    }
    // 0 side, 1 top; anything else is ignored (false).
    bool SetView(int32_t view);
    ViaView View() const { return m_view; }
    void SetTopViewLayer(int32_t layer) { m_topViewLayer = layer; }

    // Whether there is anything to draw or export: via 0 has a stackup.
    bool HasData() const;
    // The vias shown, as the export and the views read them; refers into this object.
    SpiceExportInput Input() const;
    SpiceExportNames Names() const { return {m_exportFile, m_baseName}; }

    // Drops the side view's layout, worked out once per size and font while the data stay as
    // they are: the host changes the via data in place and says so with Refresh.
    void Invalidate() { m_layout.reset(); }

    void Paint(ICanvas& canvas, const Rect& client) const;
    // The layer under `at` and its values, or empty.
    std::string HoverText(Point at, const Rect& client, const ITextMetrics& metrics) const;

    // The interactive export: save dialog, overwrite question, messages.
    SpiceExportOutcome ExportToSpice(IFileChooser& chooser,
                                     const std::optional<std::tm>& generated = std::nullopt) const;
    // Writes the subcircuit to `path` without asking; false, writing nothing, without data or
    // when the file cannot be written.
    bool ExportToSpiceFile(const std::string& path,
                           const std::optional<std::tm>& generated = std::nullopt) const;

private:
    struct Model {
        std::vector<CViaVizElement> elements;
        std::vector<CViaVizPort> ports;
    };
    int ViaCount() const { return m_pair ? 2 : 1; }
    const SideViewLayout& LayoutFor(const SpiceExportInput& input, const Rect& client,
                                    const ITextMetrics& metrics) const;

    struct CachedLayout {
        Rect client;
        Extent textSize;
        SideViewLayout layout;
    };
    mutable std::optional<CachedLayout> m_layout;

    std::array<CViaVizData, kMaxVias> m_data;
    std::array<Model, kMaxVias> m_models;
    bool m_pair = false;
    bool m_metric = false;
    ViaView m_view = ViaView::Side;
    int32_t m_topViewLayer = 0;
    std::string m_subcircuit;
    std::string m_baseName;
    std::string m_exportFile;
};

}  // namespace kv
