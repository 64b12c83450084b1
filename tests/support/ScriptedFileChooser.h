#pragma once

#include <optional>
#include <vector>

#include "core/ports/FileChooser.h"

namespace kv::test {

// Answers every file dialog with the same prepared choice (nothing: Cancel)
// and keeps what each dialog was asked to show.
class ScriptedFileChooser final : public IFileChooser {
public:
    std::optional<ChosenFile> ChooseOpenFile(const FileQuery& query) override {
        return Record(query);
    }
    std::optional<ChosenFile> ChooseSaveFile(const FileQuery& query) override {
        return Record(query);
    }

    std::optional<ChosenFile> answer;
    std::vector<FileQuery> queries;

private:
    std::optional<ChosenFile> Record(const FileQuery& query) {
        queries.push_back(query);
        return answer;
    }
};

}  // namespace kv::test
