#include "core/eyediagram/MaskLibrary.h"

#include <algorithm>
#include <string>

#include "core/eyediagram/PageFieldText.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/StimulusRules.h"

namespace kv {
namespace {

constexpr std::string_view kSection = "EYEMASKLIBRARY";
// More than any user keeps; a damaged count cannot make the page read forever.
constexpr int kMaxMasks = 1000;

std::string EntryName(std::size_t index) {
    return "Mask" + std::to_string(index);
}

std::string MaskText(const EYEMASK& mask) {
    std::string text;
    for (const StimulusRule& rule : StimulusRules()) {
        if (rule.IsMaskValue()) {
            text.append(FormatSignificant(mask.*rule.maskMember, 17)).append(",");
        }
    }
    text += MaskName(mask);
    return text;
}

std::optional<EYEMASK> ParseMask(std::string_view text) {
    EYEMASK mask = DefaultEyeMask();
    for (const StimulusRule& rule : StimulusRules()) {
        if (!rule.IsMaskValue()) {
            continue;
        }
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos) {
            return std::nullopt;
        }
        const std::optional<double> value = ParseFieldValue(text.substr(0, comma));
        if (!value) {
            return std::nullopt;
        }
        mask.*rule.maskMember = *value;
        text.remove_prefix(comma + 1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    SetMaskName(mask, text);
    return mask;
}

}  // namespace

MaskLibrary MaskLibrary::Load(IProfileStore& store) {
    MaskLibrary library;
    const int count = std::clamp(GetProfileInt(store, kSection, "Count", 0), 0, kMaxMasks);
    for (int i = 0; i < count; ++i) {
        const std::string text =
            GetProfileString(store, kSection, EntryName(static_cast<std::size_t>(i)), "");
        if (const std::optional<EYEMASK> mask = ParseMask(text)) {
            library.Put(*mask);
        }
    }
    return library;
}

bool MaskLibrary::Save(IProfileStore& store) const {
    // The entries name their keys by view: the names must outlive them.
    std::vector<std::string> names;
    for (std::size_t i = 0; i < m_masks.size(); ++i) {
        names.push_back(EntryName(i));
    }
    std::vector<IniDocument::Entry> entries;
    entries.push_back({"Count", std::to_string(m_masks.size())});
    for (std::size_t i = 0; i < m_masks.size(); ++i) {
        entries.push_back({names[i], MaskText(m_masks[i])});
    }
    return store.WriteEntries(kSection, entries).ok;
}

const EYEMASK* MaskLibrary::Find(std::string_view name) const {
    for (const EYEMASK& mask : m_masks) {
        if (MaskName(mask) == name) {
            return &mask;
        }
    }
    return nullptr;
}

void MaskLibrary::Put(const EYEMASK& mask) {
    for (EYEMASK& kept : m_masks) {
        if (MaskName(kept) == MaskName(mask)) {
            kept = mask;
            return;
        }
    }
    m_masks.push_back(mask);
}

bool MaskLibrary::Remove(std::string_view name) {
    const auto found = std::find_if(m_masks.begin(), m_masks.end(),
                                    [name](const EYEMASK& mask) { return MaskName(mask) == name; });
    if (found == m_masks.end()) {
        return false;
    }
    m_masks.erase(found);
    return true;
}

}  // namespace kv
