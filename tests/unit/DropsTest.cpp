// What a drop on the settings window stands for.

#include "settings/Drops.h"
#include "fakes/FakeInstalledApplications.h"
#include "support/TemporaryFiles.h"

#include <QMimeData>
#include <QSysInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString website = u"https://example.org/a?b=c"_s;

QUrl file(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

/// A computer with one installed application, and files that a user may drop.
struct Computer : TemporaryFiles {
    Computer()
    {
        applications.applications.append({.path = path(u"mail.desktop"_s), .name = u"Mail"_s});
        write(u"mail.desktop"_s, "[Desktop Entry]");
        write(u"link.desktop"_s, "[Desktop Entry]");
        write(u"Notes 1.2.txt"_s, "#!/bin/sh");
        write(u"tidy.sh"_s, "#!/bin/sh");
        write(u"program"_s, "\177ELF...");
        write(u"photo.jpg"_s, "\377\330");
        write(u"empty"_s, "");
        for (const QString &name : {u"tidy.sh"_s, u"program"_s, u"photo.jpg"_s, u"empty"_s})
            QFile::setPermissions(path(name), QFile::ReadOwner | QFile::ExeOwner);
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    FakeInstalledApplications applications;
};
} // namespace

class DropsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFirstUsableAddress_data()
    {
        QTest::addColumn<QList<QUrl>>("dropped");
        QTest::addColumn<QUrl>("used");
        const auto add = [](const char *row, const QList<QUrl> &dropped, const QUrl &used) {
            QTest::newRow(row) << dropped << used;
        };
        const QUrl usable(u"file:///usr/share"_s);
        const QUrl mail(u"mailto:a@example.org"_s);
        add("a file", {usable}, usable);
        add("several", {usable, file(u"/usr/bin"_s), QUrl(website)}, usable);
        add("another after one of no use", {mail, usable}, usable);
        add("a file of this computer by its name",
            {QUrl(u"file://"_s + QSysInfo::machineHostName().toUpper() + u"/usr/share"_s)},
            QUrl(u"file://"_s + QSysInfo::machineHostName().toUpper() + u"/usr/share"_s));
        add("a file of localhost", {QUrl(u"file://localhost/usr"_s)},
            QUrl(u"file://localhost/usr"_s));
        add("a website", {QUrl(website)}, QUrl(website));
        add("a file of another computer", {QUrl(u"file://elsewhere.example/usr"_s)}, {});
        add("a relative file", {QUrl(u"file:usr"_s)}, {});
        add("an address that no entry opens", {mail}, {});
        add("the trash", {QUrl(u"trash:///a"_s)}, {});
        add("a script of a website", {QUrl(u"javascript:alert(1)"_s)}, {});
        add("nothing", {}, {});
    }
    void takesTheFirstUsableAddress()
    {
        QFETCH(const QList<QUrl>, dropped);
        QFETCH(const QUrl, used);
        QMimeData data;
        data.setUrls(dropped);
        QCOMPARE(Drops::usableAddress(data).value_or(QUrl()), used);
    }

    void takesTextThatIsAnAddress_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QUrl>("used");
        QTest::newRow("a website") << website << QUrl(website);
        QTest::newRow("with space around it") << u" \n"_s + website + u"\r\n"_s << QUrl(website);
        QTest::newRow("with words around it") << u"see "_s + website << QUrl();
        QTest::newRow("two") << website + u'\n' + website << QUrl();
        QTest::newRow("words") << u"Remember the milk"_s << QUrl();
        QTest::newRow("a name without a scheme") << u"example.org"_s << QUrl();
        QTest::newRow("a file") << u"file:///usr/share"_s << QUrl();
        QTest::newRow("nothing") << QString() << QUrl();
    }
    void takesTextThatIsAnAddress()
    {
        QFETCH(const QString, text);
        QFETCH(const QUrl, used);
        QMimeData data;
        data.setText(text);
        QCOMPARE(Drops::usableAddress(data).value_or(QUrl()), used);
    }

    void makesAnEntryOfAFile_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("name");
        const auto add = [](const char *row, const QString &file, ActionKind kind,
                            const QString &name) { QTest::newRow(row) << file << kind << name; };
        add("an installed application", u"mail.desktop"_s, ActionKind::app, u"Mail"_s);
        add("a script", u"tidy.sh"_s, ActionKind::app, u"tidy"_s);
        add("a program", u"program"_s, ActionKind::app, u"program"_s);
        add("a .desktop file that starts nothing", u"link.desktop"_s, ActionKind::path, u"link"_s);
        add("a file", u"Notes 1.2.txt"_s, ActionKind::path, u"Notes 1.2"_s);
        // Every file of a memory card is executable.
        add("a picture that is executable", u"photo.jpg"_s, ActionKind::path, u"photo"_s);
        add("an empty file that is executable", u"empty"_s, ActionKind::path, u"empty"_s);
        add("a folder", {}, ActionKind::path, {});
        add("a file that is gone", u"gone.txt"_s, ActionKind::path, u"gone"_s);
    }
    void makesAnEntryOfAFile()
    {
        QFETCH(const QString, file);
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, name);
        Computer computer;
        const QString path = QDir::cleanPath(computer.path(file));
        const LaunchEntry entry = Drops::entryFor(::file(path), computer.applications);
        QCOMPARE(entry.kind, kind);
        QCOMPARE(entry.target, path);
        QCOMPARE(entry.name, name.isEmpty() ? QFileInfo(path).completeBaseName() : name);
        QVERIFY(entry.isEnabled);
        QVERIFY(!entry.id.isNull());
    }

    void makesAnEntryOfAnAddress_data()
    {
        QTest::addColumn<QUrl>("address");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("name");
        QTest::newRow("a website") << QUrl(website) << website << u"example.org"_s;
        QTest::newRow("letters with accents")
            << QUrl(u"https://example.org/ä b"_s) << u"https://example.org/%C3%A4%20b"_s
            << u"example.org"_s;
        QTest::newRow("a folder") << QUrl(u"file:///usr/share/"_s) << u"/usr/share"_s << u"share"_s;
        QTest::newRow("the root") << QUrl(u"file:///"_s) << u"/"_s << u"/"_s;
        QTest::newRow("a name with signs of addresses")
            << QUrl(u"file:///nowhere/100%25%20%231%3F.txt"_s) << u"/nowhere/100% #1?.txt"_s
            << u"100% #1?"_s;
        QTest::newRow("a computer's name")
            << QUrl(u"file://localhost/usr/share"_s) << u"/usr/share"_s << u"share"_s;
    }
    void makesAnEntryOfAnAddress()
    {
        QFETCH(const QUrl, address);
        FakeInstalledApplications applications;
        const LaunchEntry entry = Drops::entryFor(address, applications);
        QTEST(entry.target, "target");
        QTEST(entry.name, "name");
    }
};

QTEST_GUILESS_MAIN(DropsTest)
#include "DropsTest.moc"
