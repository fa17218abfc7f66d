#include "plan/FileTypes.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

class FileTypesTest : public QObject {
    Q_OBJECT

private slots:
    void splitsTypes_data() {
        const Columns<QString, QString> row("text", "types");
        row(".doc,.txt", ".doc, .txt");
        row(" , .doc  .DOC ,,.Doc txt,", ".doc, txt");
        row("", "");
    }

    void splitsTypes() {
        const auto [text, types] = Fetched<QString, QString>();
        QCOMPARE(JoinFileTypes(SplitFileTypes(text)), types);
    }

    void namesFoldersInTheMannerOfEitherSystem_data() {
        const Columns<QString, QString, QString> row("path", "folder", "name");
        row("C:\\a\\b.txt", "C:\\a", "b.txt");
        row("C:\\b.txt", "C:\\", "b.txt");
        row("\\\\server\\share\\b.txt", "\\\\server\\share", "b.txt");
        row("C:/a/b.txt", "C:/a", "b.txt");
        row("/b.txt", "/", "b.txt");
        row("/a/b\\c.txt", "/a", "b\\c.txt");
        row("b.txt", "", "b.txt");
    }

    void namesFoldersInTheMannerOfEitherSystem() {
        const auto [path, folder, name] = Fetched<QString, QString, QString>();
        QCOMPARE(FolderOfFile(path).toString(), folder);
        QCOMPARE(NameOfFile(path).toString(), name);
    }

    void proposesANameOfTheDay() {
        QCOMPARE(FileTypeTaskName(FileCategory::Pictures, u"%1 PC"_s, QDate(2025, 3, 4)),
                 u"Backup All My Pictures On %1 PC [2025-03-04]"_s);
        QCOMPARE(FileTypesOf(FileCategory::All), QStringList());
    }
};

BTASK_TEST(FileTypesTest);
#include "FileTypesTest.moc"
