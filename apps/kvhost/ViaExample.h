#pragma once

#include <QString>

class IViaVizCtrl;

// Fills a via visualizer control, through its interface only, with an example board described
// in JSON (the format kvcomctl spice reads, see README.md): the stackup and padstack into each
// via's IViaVizData, the elements and ports through SetElements and SetPorts, the subcircuit
// name and the pair flag. The examples are the library's own, so a description the reader
// does not understand is reported as an error rather than explained field by field.
bool FillViaControl(IViaVizCtrl& control, const QString& jsonPath, QString* error);
