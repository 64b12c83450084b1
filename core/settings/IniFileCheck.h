#pragma once

#include <optional>
#include <string>

// Whether a file can serve as an initialisation file to read stimulus data
// from. The settings reader takes anything it can read and gives defaults for
// what it does not find; a caller that was handed a path by a person (the
// command line, the Python module) refuses what is plainly no INI file
// instead, with one reason worded the same everywhere.

namespace kv {

enum class IniFileProblemKind { Missing, Folder, Unreadable, Empty, NotIni };

struct IniFileProblem {
    IniFileProblemKind kind;
    std::string reason;  // names the path
};

// None when the file is an INI file, or when it is missing or empty and need
// not exist (it is then made).
std::optional<IniFileProblem> FindIniFileProblem(const std::string& path, bool mustExist);

}  // namespace kv
