#include "backup/IndexedFiles.h"

#include "plan/BackupDraft.h"
#include "plan/BackupMatcher.h"
#include "plan/FileTypes.h"
#include "stores/FileIndexStore.h"

#include <QCoreApplication>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(IndexedFiles)
};

ReadResult ReadFiles(RecordStream<IndexedFile>& rows, const IndexedFileQuery& query, std::stop_token stop) {
    const BackupMatcher matcher(BackupFilter{{}, {}, {}}, query.exclusions);
    FileIndexStore store(std::move(stop));
    ReadResult read;
    const auto take = [&](const QString& path) {
        if (query.exclusions.isEmpty() || !matcher.IsExcluded(path)) {
            rows.Put({path});
            ++query.count->files;
        }
        return true;
    };
    for (const QString& type : query.types)
        for (const QString& form : IndexedForms(type))
            if (read)
                read = store.EnumFilesByExt(form, take);
    query.count->ended = read.outcome != ReadOutcome::Stopped;
    return read;
}

} // namespace

QString IndexedFile::NameCell() const {
    return Cell::Plain(NameOfFile(path).toString());
}

QString IndexedFile::FolderCell() const {
    return Cell::Plain(FolderOfFile(path).toString());
}

void IndexedFileBlock::push_back(const IndexedFile& file) {
    m_paths.append(file.path);
    m_ends.push_back(m_paths.size());
}

IndexedFile IndexedFileBlock::operator[](std::size_t row) const {
    const qsizetype begin = row == 0 ? 0 : m_ends[row - 1];
    return {QStringView(m_paths).sliced(begin, m_ends[row] - begin)};
}

void IndexedFileBlock::shrink_to_fit() {
    m_paths.squeeze();
    m_ends.shrink_to_fit();
}

RecordTable<IndexedFile> IndexedFileTable(RecordPage page, const IndexedFileQuery& query) {
    return {.page = std::move(page),
            .columns = {{Words::tr("File Name"), 220, &IndexedFile::NameCell},
                        {Words::tr("Location"), 320, &IndexedFile::FolderCell}},
            .id = &IndexedFile::path,
            .read = [query](RecordStream<IndexedFile>& rows, std::stop_token stop) {
                return ReadFiles(rows, query, std::move(stop));
            }};
}
