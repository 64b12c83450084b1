#include "core/settings/IniFileCheck.h"

#include <filesystem>
#include <system_error>

#include "core/settings/IniDocument.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AsciiText.h"
#include "core/shared/FileIo.h"

namespace kv {

std::optional<IniFileProblem> FindIniFileProblem(const std::string& path, bool mustExist) {
    using Kind = IniFileProblemKind;
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        if (!mustExist) {
            return std::nullopt;
        }
        return IniFileProblem{Kind::Missing, "cannot read " + path + ": no such file"};
    }
    if (std::filesystem::is_directory(status)) {
        return IniFileProblem{Kind::Folder, path + " is a folder, not an INI file"};
    }
    std::string reason;
    const auto text = ReadWholeFile(path, kMaxProfileBytes, &reason);
    if (!text) {
        return IniFileProblem{Kind::Unreadable, "cannot read " + path + ": " + reason};
    }
    if (TrimSpace(*text).empty()) {
        if (!mustExist) {
            return std::nullopt;
        }
        return IniFileProblem{Kind::Empty, path + " is empty"};
    }
    if (!LooksLikeIniText(*text)) {
        return IniFileProblem{
            Kind::NotIni,
            path + " is no INI file: it holds no [section] line, or bytes no text holds"};
    }
    return std::nullopt;
}

}  // namespace kv
