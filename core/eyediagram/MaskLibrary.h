#pragma once

#include <string_view>
#include <vector>

#include "kvcomctl/EyeMask.h"

// The library of named eye masks, kept in the module's settings store in
// section "EYEMASKLIBRARY": "Count" and one entry "Mask<i>" per mask holding
// its fifteen numbers ("%.17g", so each reads back exactly; comma-separated,
// in record order) and then
// its name.

namespace kv {

class IProfileStore;

class MaskLibrary {
public:
    // Entries that do not read as a mask are left out.
    static MaskLibrary Load(IProfileStore& store);
    bool Save(IProfileStore& store) const;

    const std::vector<EYEMASK>& Masks() const { return m_masks; }
    const EYEMASK* Find(std::string_view name) const;
    // Replaces the mask of the same name or adds it at the end.
    void Put(const EYEMASK& mask);
    bool Remove(std::string_view name);

private:
    std::vector<EYEMASK> m_masks;
};

}  // namespace kv
