// Where the program keeps its files: beside itself when it may write there, in ~/Brizalog when
// it is an installed copy.

#include "app/program_folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <QTest>
#include <filesystem>

namespace brizalog {

namespace fs = std::filesystem;

class ProgramFolderTest : public QObject {
    Q_OBJECT

private slots:
    void aCopyThatMayWriteBesideItselfKeepsItsFilesThere() {
        QTemporaryDir root;
        const fs::path program = fs::path(root.path().toStdString()) / "unpacked";
        const fs::path home = fs::path(root.path().toStdString()) / "home";
        fs::create_directories(program);
        fs::create_directories(home);

        QCOMPARE(ChooseProgramFolder(program, home, "/usr/local/bin"), program);
        QVERIFY(!fs::exists(home / "Brizalog"));
    }

    void anInstalledCopyUsesBrizalogInTheHomeFolderMadeAtItsFirstStart() {
        QTemporaryDir root;
        const fs::path bin = fs::path(root.path().toStdString()) / "prefix" / "bin";
        const fs::path home = fs::path(root.path().toStdString()) / "home";
        fs::create_directories(bin);
        fs::create_directories(home);

        // The install's own bin folder, even where the user may write (root, or a prefix in
        // the home), and anything under /usr.
        QCOMPARE(ChooseProgramFolder(bin, home, bin), home / "Brizalog");
        QVERIFY(fs::is_directory(home / "Brizalog"));
        QCOMPARE(ChooseProgramFolder(bin / "", home, bin.parent_path()), home / "Brizalog");
        QCOMPARE(ChooseProgramFolder("/usr/bin", home, ""), home / "Brizalog");
        QCOMPARE(ChooseProgramFolder("/usr/lib/../bin", home, ""), home / "Brizalog");
        // A sibling whose name only starts like the install folder is not inside it.
        const fs::path sibling = bin.parent_path() / "bin2";
        fs::create_directories(sibling);
        QCOMPARE(ChooseProgramFolder(sibling, home, bin), sibling);
    }

    void aFolderTheUserMayNotWriteIsLeftForTheHomeFolder() {
        if (::geteuid() == 0) {
            QSKIP("root may write into any folder");
        }
        QTemporaryDir root;
        const fs::path program = fs::path(root.path().toStdString()) / "readonly";
        const fs::path home = fs::path(root.path().toStdString()) / "home";
        fs::create_directories(program);
        fs::create_directories(home);
        ::chmod(program.c_str(), 0555);
        QCOMPARE(ChooseProgramFolder(program, home, "/usr/local/bin"), home / "Brizalog");
        ::chmod(program.c_str(), 0755);
    }
};

}  // namespace brizalog

QTEST_GUILESS_MAIN(brizalog::ProgramFolderTest)
#include "program_folder_test.moc"
