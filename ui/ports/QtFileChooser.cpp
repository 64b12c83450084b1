#include "ui/ports/QtFileChooser.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

namespace kv::ui {
namespace {

QString Trimmed(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed();
}

// "Name (*.a)" -> "Name": the patterns are put back from the pattern field.
QString DescriptionWithoutPatterns(QString description) {
    if (description.endsWith(u')')) {
        const qsizetype open = description.lastIndexOf(u'(');
        if (open > 0) {
            description.truncate(open);
        }
    }
    return description.trimmed();
}

std::optional<ChosenFile> Run(QWidget* parent, const FileQuery& query,
                              QFileDialog::AcceptMode mode) {
    QFileDialog dialog(parent, QString::fromStdString(query.title),
                       QString::fromStdString(query.defaultFileName), QtFileFilter(query.filter));
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QString::fromStdString(query.defaultExtension));
    dialog.setOption(QFileDialog::ReadOnly, false);
    // Commands that save ask their own overwrite question, with their own text and default.
    dialog.setOption(QFileDialog::DontConfirmOverwrite, true);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    const QFileInfo chosen(dialog.selectedFiles().constFirst());
    return ChosenFile{chosen.absolutePath().toStdString(), chosen.fileName().toStdString()};
}

}  // namespace

QString QtFileFilter(std::string_view filter) {
    QStringList pairs;
    while (!filter.empty()) {
        const size_t descriptionEnd = filter.find('|');
        if (descriptionEnd == std::string_view::npos) {
            break;
        }
        const QString description = Trimmed(filter.substr(0, descriptionEnd));
        filter.remove_prefix(descriptionEnd + 1);
        const size_t patternsEnd = std::min(filter.find('|'), filter.size());
        QStringList patterns;
        for (const QString& pattern : Trimmed(filter.substr(0, patternsEnd)).split(u';')) {
            if (!pattern.trimmed().isEmpty()) {
                patterns << pattern.trimmed();
            }
        }
        filter.remove_prefix(std::min(patternsEnd + 1, filter.size()));
        if (description.isEmpty()) {
            break;  // "||" ends the list
        }
        pairs << DescriptionWithoutPatterns(description) + QStringLiteral(" (") +
                     patterns.join(u' ') + u')';
    }
    return pairs.join(QStringLiteral(";;"));
}

std::optional<ChosenFile> QtFileChooser::ChooseOpenFile(const FileQuery& query) {
    return Run(m_parent, query, QFileDialog::AcceptOpen);
}

std::optional<ChosenFile> QtFileChooser::ChooseSaveFile(const FileQuery& query) {
    return Run(m_parent, query, QFileDialog::AcceptSave);
}

}  // namespace kv::ui
