#include "clouddrive/BrowseDlg.h"

#include "page/NoticeLine.h"
#include "support/ConsoleFixture.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "wizard/CheckTreeView.h"
#include "zep/Mui.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A service with the directories "Home" and "V", and the picker before it.
struct Picker {
    explicit Picker(RemoteFolderRequest request = {}, bool homeOnly = false,
                    FolderPicker::MountWizard mount = {}) {
        const std::string provider = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
        service->SetVirtualDirectories({{"Home", "{B}", 3, provider}, {"V", "{C}", 3, provider}});
        for (const QString& path : {u"V/Part 10/deep"_s, u"V/Part 2"_s, u"V/part 1"_s, u"Home/Mine"_s})
            drive.mkpath(path);
        if (homeOnly) {
            QFile branding(service.Home() + "/branding.xml"_L1);
            if (branding.open(QIODevice::WriteOnly))
                branding.write("<BrandingTexts><Branding Number='105'>Yes</Branding></BrandingTexts>");
            branding.close();
            ZEPMuiInitialize(branding.fileName().toStdU16String());
        }
        dialog = std::make_unique<CBrowseDlg>(parts.console, std::move(request), std::move(mount));
        dialog->show();
        parts.reader.StepAll();
    }
    ~Picker() { ZEPMuiInitialize({}); }

    CheckTreeView& Tree() const { return *dialog->findChild<CheckTreeView*>(); }
    QLineEdit& PathEdit() const { return *dialog->findChild<QLineEdit*>(); }
    QString Notice() const { return dialog->findChild<NoticeLine*>()->Text(); }
    QPushButton& Ok() const { return *dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }
    QPushButton* Button(const QString& text) const {
        for (QPushButton* button : dialog->findChildren<QPushButton*>())
            if (button->text().remove(u'&') == text)
                return button;
        return nullptr;
    }

    /// Types into the path and presses Enter.
    void Type(const QString& path) {
        PathEdit().setText(path);
        QTest::keyClick(&PathEdit(), Qt::Key_Return);
        parts.reader.StepAll();
    }
    void NewFolder(const QString& name, const QString& failure = {}) {
        const QString parent = dialog->Path();
        parts.prompts.ExpectText(u"A new folder in \"%1\":"_s.arg(parent), name);
        if (!failure.isEmpty())
            parts.prompts.ExpectMessage(failure);
        Button(u"New Sub-folder"_s)->click();
        parts.reader.StepAll();
    }
    QStringList Names(const QStringList& path) const {
        QStringList names;
        const TreeLevels::Node* node = Tree().Tree().Levels().Find(path);
        for (const auto& child : node->children)
            names.append(child->entry.name);
        return names;
    }
    QStringList Sent() const { return service.RequestLines(); }

    ServiceFixture service;
    QDir drive{service.Home() + "/drive"_L1};
    ConsoleFixture<> parts;
    std::unique_ptr<CBrowseDlg> dialog;
};

} // namespace

class BrowseDlgTest : public QObject {
    Q_OBJECT

private slots:
    void listsALevelOnceInNaturalOrder() {
        Picker picker;
        QCOMPARE(picker.dialog->windowTitle(), u"Select folder"_s);
        QFile(picker.drive.filePath(u"V/file"_s)).open(QIODevice::WriteOnly);
        QCOMPARE(picker.Names({}), (QStringList{u"Home"_s, u"V"_s}));
        QVERIFY(!picker.Ok().isEnabled());
        CheckTreeView& tree = picker.Tree();
        QTest::keyClick(&tree, Qt::Key_Down);
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Right})
            QTest::keyClick(&tree, key);
        picker.parts.reader.StepAll();
        const QStringList names = picker.Names({u"V"_s});
        QVERIFY(!names.contains(u"file"_s));
        QVERIFY(names.indexOf(u"part 1"_s) < names.indexOf(u"Part 2"_s));
        QVERIFY(names.indexOf(u"Part 2"_s) < names.indexOf(u"Part 10"_s));
        QCOMPARE(picker.Sent(), (QStringList{u"PROPFIND /resources"_s, u"PROPFIND /resources/V"_s}));
        QCOMPARE(picker.PathEdit().text(), u"/V"_s);
        QVERIFY(picker.Ok().isEnabled());
        picker.drive.mkpath(u"V/Part 3"_s);
        QTest::keyClick(&picker.PathEdit(), Qt::Key_F5);
        picker.parts.reader.StepAll();
        QVERIFY(picker.Names({u"V"_s}).contains(u"Part 3"_s));
        QTest::keyClick(&tree, Qt::Key_Return);
        QCOMPARE(picker.dialog->result(), int(QDialog::Accepted));
        QCOMPARE(picker.dialog->Path(), u"/V"_s);
    }

    void goesToATypedPath_data() {
        const Columns<QString, QString, QString> row("typed", "selected", "notice");
        row("/V/Part 10/deep", "/V/Part 10/deep", {});
        row("v/PART 2/", "/V/Part 2", {});
        row("/V/None/x", "/V", "There is no folder \"None\" in \"/V/\".");
        row("/None", {}, "There is no folder \"None\" in \"/\".");
    }
    void goesToATypedPath() {
        const auto [typed, selected, notice] = Fetched<QString, QString, QString>();
        Picker picker;
        picker.Type(typed);
        QCOMPARE(picker.dialog->Path(), selected);
        QCOMPARE(picker.Notice(), notice);
        QVERIFY(notice.isEmpty() || picker.PathEdit().text() == typed);
        QVERIFY(picker.dialog->isVisible());
    }

    void okTakesWhatWasTyped() {
        RemoteFolderRequest request;
        request.start = u"/V/Part 2/gone"_s;
        request.refuse = [](const QString& path) {
            return path.endsWith(u"deep"_s) ? u"Not this one."_s : QString();
        };
        Picker picker(request);
        QCOMPARE(picker.dialog->Path(), u"/V/Part 2"_s);
        picker.PathEdit().setText(u"/V/Part 10/deep"_s);
        picker.Ok().click();
        picker.parts.reader.StepAll();
        QCOMPARE(picker.Notice(), u"Not this one."_s);
        picker.PathEdit().setText(u"/V/part 1"_s);
        picker.Ok().click();
        picker.parts.reader.StepAll();
        QVERIFY(!picker.dialog->isVisible());
        QCOMPARE(picker.dialog->Path(), u"/V/part 1"_s);
    }

    void makesAFolder() {
        Picker picker;
        picker.parts.prompts.ExpectMessage(u"Please select a folder first."_s);
        picker.Button(u"New Sub-folder"_s)->click();
        picker.Type(u"/V/Part 10"_s);
        picker.NewFolder(u"new folder"_s);
        QVERIFY(picker.drive.exists(u"V/Part 10/new folder"_s));
        QCOMPARE(picker.dialog->Path(), u"/V/Part 10/new folder"_s);
        const QModelIndex row = picker.Tree().currentIndex();
        QVERIFY(picker.Tree().viewport()->rect().intersects(picker.Tree().visualRect(row)));

        picker.Type(u"/V/Part 10"_s);
        picker.NewFolder(u"DEEP"_s); // is there already
        QCOMPARE(picker.dialog->Path(), u"/V/Part 10/deep"_s);
        QCOMPARE(picker.Sent().filter(u"MKCOL"_s).size(), 1);

        picker.service->SetFault("status:403");
        picker.NewFolder(u"x"_s, ZEPMuiGetStringW(Message::FolderNotCreated));
        QCOMPARE(picker.dialog->Path(), u"/V/Part 10/deep"_s);
    }

    void aFailedLevelSaysSo() {
        Picker picker;
        picker.service->SetFault("status:503");
        picker.Type(u"/V/Part 2"_s);
        const QString failure = u"The service does not list this folder (status 503)."_s;
        QCOMPARE(picker.Names({u"V"_s}), QStringList(failure));
        QCOMPARE(picker.Notice(), failure);
        picker.service->ClearFaults();
        picker.Type(u"/V/Part 2"_s);
        QCOMPARE(picker.dialog->Path(), u"/V/Part 2"_s);
        QCOMPARE(picker.Notice(), QString());
    }

    void staysInHome() {
        RemoteFolderRequest request;
        request.hiddenToo = true;
        request.oneLevel = true;
        const auto mount = [](const Console&, QWidget*, const std::function<void(bool)>& done) {
            done(true);
        };
        Picker picker(request, true, mount);
        QCOMPARE(picker.dialog->windowTitle(), u"Backup Target"_s);
        QVERIFY(!picker.Button(u"Mount Cloud Storage"_s));
        QCOMPARE(picker.Sent(), QStringList(u"PROPFIND /resources/home"_s));
        picker.Type(u"/home/mine"_s);
        QCOMPARE(picker.dialog->Path().toLower(), u"/home/mine"_s);
        QVERIFY(!picker.Tree().Tree().hasChildren(picker.Tree().currentIndex()));
        picker.Type(u"/V"_s);
        QCOMPARE(picker.Notice(), u"\"/V\" is not below \"/home\"."_s);
        // What is filled anew is filled from the root.
        picker.Type(u"/home/mine"_s);
        picker.NewFolder(u"More"_s);
        QCOMPARE(picker.Names({}), (QStringList{u"Home"_s, u"V"_s}));
    }

    void showsHomeAsTheRoot() {
        RemoteFolderRequest request;
        request.homeIsRoot = true;
        Picker picker(request, true);
        QCOMPARE(picker.Names({}), (QStringList{u"/"_s, u"V"_s}));
        QTest::keyClick(&picker.Tree(), Qt::Key_Space);
        QCOMPARE(picker.dialog->Path(), u"/Home"_s);
    }

    void fillsAnewAfterMounting() {
        std::function<void(bool)> done;
        Picker picker({}, false, [&done](const Console&, QWidget*, std::function<void(bool)> closed) {
            done = std::move(closed);
        });
        picker.Type(u"/V/Part 2"_s);
        picker.Button(u"Mount Cloud Storage"_s)->click();
        picker.service->SetVirtualDirectories({{"V", "{C}", 3, {}}, {"W", "{C}", 3, {}}});
        done(true);
        picker.parts.reader.StepAll();
        QVERIFY(picker.Names({}).contains(u"W"_s));
        QCOMPARE(picker.dialog->Path(), u"/V/Part 2"_s);
        picker.dialog.reset();
        done(false); // nobody is there to hear it
    }
};

BTASK_TEST(BrowseDlgTest);
#include "BrowseDlgTest.moc"
