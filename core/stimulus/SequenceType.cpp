#include "core/stimulus/SequenceType.h"

#include <span>

namespace kv {

std::optional<std::string_view> SequenceTypeNameFor(int code, int listMode) {
    const std::span<const SequenceTypeName> list =
        listMode == 0 ? std::span<const SequenceTypeName>(kEyeDiagramSequenceList)
                      : std::span<const SequenceTypeName>(kStimulusSequenceList);
    for (const SequenceTypeName& entry : list) {
        if (entry.code == code) {
            return entry.name;
        }
    }
    return std::nullopt;
}

}  // namespace kv
