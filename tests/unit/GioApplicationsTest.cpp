#include "platform/linux/launch/GioApplications.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{
/// The user's folder and the two of the system, of which the first goes before the second.
QTemporaryDir data;

QString inFolder(const QString &folder, const QString &file)
{
    return data.filePath(folder + u"/applications/"_s + file);
}

QString write(const QString &folder, const QString &file, const QByteArray &lines)
{
    const QString path = inFolder(folder, file);
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile written(path);
    written.open(QFile::WriteOnly);
    written.write("[Desktop Entry]\nType=Application\n" + lines);
    return path;
}

struct File {
    const char *description;
    QString name;
    QByteArray lines;
    bool isListed;
};

/// All are in the system's second folder.
const QList<File> files{
    {"one without peculiarities", u"plain.desktop"_s, "Name=Plain\nExec=true\n", true},
    {"one in a folder of its own", u"suite/writer.desktop"_s, "Name=Writer\nExec=true\n", true},
    {"one for this desktop", u"ours.desktop"_s, "Name=Ours\nExec=true\nOnlyShowIn=Test;\n", true},
    {"one for another desktop", u"kde.desktop"_s, "Name=Kde\nExec=true\nOnlyShowIn=KDE;\n", false},
    {"one not for this desktop", u"not.desktop"_s, "Name=Not\nExec=true\nNotShowIn=Test;\n", false},
    {"one that is not for menus", u"helper.desktop"_s, "Name=Helper\nExec=true\nNoDisplay=true\n",
     false},
    {"one that the user deleted", u"gone.desktop"_s, "Name=Gone\nExec=true\nHidden=true\n", false},
    {"one whose TryExec is there", u"try.desktop"_s, "Name=Try\nExec=true\nTryExec=sh\n", true},
    {"one whose TryExec is missing", u"tried.desktop"_s,
     "Name=Tried\nExec=true\nTryExec=/no/such\n", false},
    {"one whose program is missing", u"missing.desktop"_s, "Name=Missing\nExec=/no/such\n", false},
    {"a link", u"link.desktop"_s, "Type=Link\nName=Link\nURL=https://example.org\n", false},
    {"what is no .desktop file", u"plain.txt"_s, "Name=Text\nExec=true\n", false},
};
} // namespace

class GioApplicationsTest : public QObject
{
    Q_OBJECT

    GioApplications applications;

    /// The listed application of this file; one without a path if there is none.
    InstalledApplication listed(const QString &path)
    {
        const auto all = applications.all();
        const auto found =
            std::find_if(all.begin(), all.end(),
                         [&path](const InstalledApplication &app) { return app.path == path; });
        return found == all.end() ? InstalledApplication{} : *found;
    }

    QStringList names()
    {
        QStringList names;
        for (const InstalledApplication &app : applications.all())
            names << app.name;
        return names;
    }

private Q_SLOTS:
    void initTestCase()
    {
        // GIO reads them once.
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.filePath(u"home"_s)));
        qputenv("XDG_DATA_DIRS",
                QFile::encodeName(data.filePath(u"local"_s) + u':' + data.filePath(u"system"_s)));
        qputenv("XDG_CURRENT_DESKTOP", "Test");
        qputenv("LANGUAGE", "de");
        for (const File &file : files)
            write(u"system"_s, file.name, file.lines);
        write(u"home"_s, u"own.desktop"_s, "Name=Own\nExec=true\n");
    }

    void init() { QLocale::setDefault(QLocale::c()); }

    void listsWhatMenusShow_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isListed");
        for (const File &file : files)
            QTest::newRow(file.description) << file.name << file.isListed;
    }
    void listsWhatMenusShow()
    {
        QFETCH(const QString, file);
        QFETCH(const bool, isListed);
        const QString path = inFolder(u"system"_s, file);
        QCOMPARE(listed(path).path, isListed ? path : QString());
    }

    void tellsWhatAFileSays_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<InstalledApplication>("application");
        const auto add = [](const char *row, const QByteArray &lines,
                            const InstalledApplication &application) {
            QTest::newRow(row) << lines << application;
        };
        add("nothing but a name", "Name=N\n", {.name = u"N"_s});
        add("a name in the user's language", "Name=Files\nName[de]=Dateien\n",
            {.name = u"Dateien"_s});
        add("a fuller name for people", "Name=N\nX-GNOME-FullName=N, the Great\n",
            {.name = u"N, the Great"_s});
        add("an icon of the theme", "Name=N\nIcon=org.example.N\n",
            {.name = u"N"_s, .icon = u"org.example.N"_s});
        add("an icon with a superfluous ending", "Name=N\nIcon=example.png\n",
            {.name = u"N"_s, .icon = u"example"_s});
        add("an image file", "Name=N\nIcon=/opt/n/n.png\n",
            {.name = u"N"_s, .icon = u"/opt/n/n.png"_s});
        add("what kind it is, and words to find it by",
            "Name=N\nGenericName=Editor\nGenericName[de]=Schreibwerk\nKeywords=text;;notes;\n",
            {.name = u"N"_s, .keywords = {u"Schreibwerk"_s, u"text"_s, u"notes"_s}});
    }
    void tellsWhatAFileSays()
    {
        QFETCH(const QByteArray, lines);
        QFETCH(InstalledApplication, application);
        application.path = write(u"other"_s, u"app.desktop"_s, "Exec=true\n" + lines);
        QCOMPARE(applications.at(application.path), application);
    }

    void knowsTheApplicationsOfFilesThatMenusDoNotShow_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        const auto add = [](const char *row, const QString &path, const QString &name) {
            QTest::newRow(row) << path << name;
        };
        const auto inSystem = [](const QString &file) { return inFolder(u"system"_s, file); };
        add("one that is not for menus", inSystem(u"helper.desktop"_s), u"Helper"_s);
        add("one for another desktop", inSystem(u"kde.desktop"_s), u"Kde"_s);
        add("one whose program is missing", inSystem(u"missing.desktop"_s), {});
        add("a link", inSystem(u"link.desktop"_s), {});
        add("what is no .desktop file", inSystem(u"plain.txt"_s), {});
        add("no file", inSystem(u"none.desktop"_s), {});
        add("a folder", data.path(), {});
        add("no path", {}, {});
    }
    void knowsTheApplicationsOfFilesThatMenusDoNotShow()
    {
        QFETCH(const QString, path);
        const auto application = applications.at(path);
        QTEST(application ? application->name : QString(), "name");
        QCOMPARE(application ? application->path : path, path);
    }

    void tellsTheSameOfAnApplicationByItsFileAsInTheList()
    {
        const QString path = inFolder(u"system"_s, u"plain.desktop"_s);
        QCOMPARE(applications.at(path), listed(path));
    }

    void tellsTheWholePathOfAFileInTheWorkingFolder()
    {
        const QString path = write(u"other"_s, u"here.desktop"_s, "Name=Here\nExec=true\n");
        const QString before = QDir::currentPath();
        QDir::setCurrent(path.section(u'/', 0, -2));
        const auto application = applications.at(u"here.desktop"_s);
        QDir::setCurrent(before);
        QCOMPARE(application->path, path);
    }

    void prefersTheUsersFileToTheSystems()
    {
        write(u"system"_s, u"browser.desktop"_s, "Name=Third Browser\nExec=true\n");
        write(u"local"_s, u"browser.desktop"_s, "Name=Second Browser\nExec=true\n");
        QTRY_COMPARE(names().filter(u"Browser"_s), QStringList(u"Second Browser"_s));
        write(u"home"_s, u"browser.desktop"_s, "Name=First Browser\nExec=true\n");
        QTRY_COMPARE(names().filter(u"Browser"_s), QStringList(u"First Browser"_s));
    }

    void hidesWhatTheUserHides()
    {
        write(u"system"_s, u"game.desktop"_s, "Name=Game\nExec=true\n");
        QTRY_VERIFY(names().contains(u"Game"_s));
        write(u"home"_s, u"game.desktop"_s, "Name=Game\nHidden=true\n");
        QTRY_VERIFY(!names().contains(u"Game"_s));
    }

    void sortsByNameAsPeopleDo_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QStringList>("sorted");
        QTest::newRow("in German")
            << QLocale(QLocale::German)
            << QStringList{u"zz 9"_s, u"ZZ Alpha"_s, u"zz Äpfel"_s, u"zz beta"_s, u"ZZ Zeta"_s};
        QTest::newRow("without a language")
            << QLocale::c()
            << QStringList{u"zz 9"_s, u"ZZ Alpha"_s, u"zz beta"_s, u"ZZ Zeta"_s, u"zz Äpfel"_s};
    }
    void sortsByNameAsPeopleDo()
    {
        QFETCH(const QLocale, locale);
        QFETCH(const QStringList, sorted);
        for (const QString &name : sorted)
            write(u"home"_s, name + u".desktop"_s, "Exec=true\nName=" + name.toUtf8() + '\n');
        QLocale::setDefault(locale);
        QTRY_COMPARE(names().last(sorted.size()), sorted);
    }

    void seesWhatIsInstalledAndRemovedWithoutAnEventLoop()
    {
        const QString path = write(u"home"_s, u"fresh.desktop"_s, "Name=Fresh\nExec=true\n");
        const auto isListedSoon = [this, &path](bool expected) {
            const QDeadlineTimer deadline(5000);
            while (listed(path).path.isEmpty() == expected && !deadline.hasExpired())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return listed(path).path.isEmpty() != expected;
        };
        QVERIFY(isListedSoon(true));
        QFile::remove(path);
        QVERIFY(isListedSoon(false));
    }
};

QTEST_APPLESS_MAIN(GioApplicationsTest)
#include "GioApplicationsTest.moc"
