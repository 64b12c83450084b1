#pragma once

#include <QString>
#include <string_view>

#include "core/ports/FileChooser.h"

class QWidget;

namespace kv::ui {

// The file dialogs as QFileDialog, modal over `parent`.
class QtFileChooser final : public IFileChooser {
public:
    explicit QtFileChooser(QWidget* parent = nullptr) : m_parent(parent) {}

    std::optional<ChosenFile> ChooseOpenFile(const FileQuery& query) override;
    std::optional<ChosenFile> ChooseSaveFile(const FileQuery& query) override;

private:
    QWidget* m_parent;
};

// Converts a filter of alternating descriptions and patterns,
// "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|", into Qt's form,
// "Bit sequence file (*.bit);;All Files (*.*)". Qt reads the patterns from
// the parentheses, so each description gets the patterns of its pair in
// place of any it already named.
QString QtFileFilter(std::string_view filter);

}  // namespace kv::ui
