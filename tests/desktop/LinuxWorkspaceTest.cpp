// What can be opened as an application, and what is said where it cannot.

#include "platform/linux/LinuxWorkspace.h"
#include "support/RecordedApp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Opens an application and awaits how that ends: an empty text is success.
QString open(const QString &path)
{
    LinuxWorkspace workspace;
    const auto outcome = std::make_shared<std::optional<QString>>();
    workspace.openApplication(path, [outcome](const std::optional<Error> &error) {
        *outcome = error ? error->description : QString();
    });
    return QTest::qWaitFor([outcome] { return outcome->has_value(); }) ? **outcome : u"hangs"_s;
}

/// A file with that content.
class File
{
public:
    File(const QString &name, const QByteArray &content, bool isExecutable)
        : m_path(m_folder.filePath(name))
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(m_path));
        if (isExecutable)
            file.setPermissions(file.permissions() | QFile::ExeOwner);
    }

    QString path() const { return m_path; }

private:
    QTemporaryDir m_folder;
    QString m_path;
};

std::string folderOf(const nlohmann::json &start)
{
    return start["folder"].get<std::string>();
}
} // namespace

class LinuxWorkspaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensADesktopFileInTheHomeFolder()
    {
        const RecordedApp app("--name %c --file %k");
        QCOMPARE(open(app.desktopFile()), QString());
        QTRY_COMPARE(app.starts().size(), 1);
        const auto start = app.starts().constFirst();
        QCOMPARE(folderOf(start), QDir::homePath().toStdString());
        QCOMPARE(QByteArray::fromStdString(start["arguments"].dump()),
                 R"(["--name","Recorded","--file",")" + app.desktopFile().toUtf8() + R"("])");
    }

    void opensADesktopFileInTheFolderThatItNames()
    {
        const RecordedApp app({}, "Path=/usr/share");
        QCOMPARE(open(app.desktopFile()), QString());
        QTRY_COMPARE(app.starts().size(), 1);
        QCOMPARE(folderOf(app.starts().constFirst()), std::string("/usr/share"));
    }

    void opensAnExecutableFile()
    {
        const RecordedApp app;
        const File program(u"program with blanks"_s, "#!/bin/sh\nexec " + app.command() + '\n',
                           true);
        QCOMPARE(open(program.path()), QString());
        QTRY_COMPARE(app.starts().size(), 1);
    }

    void saysWhyItCannotOpenSomething_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isExecutable");
        QTest::addColumn<QString>("reason");
        const auto addDesktopFile = [](const char *row, const QByteArray &lines,
                                       const QString &reason) {
            QTest::newRow(row) << u"org.example.X.desktop"_s
                               << "[Desktop Entry]\nType=Application\nName=X\n" + lines << false
                               << reason;
        };
        addDesktopFile("a program that is not there", "Exec=/nowhere/program\n",
                       u"The app could not be started."_s);
        addDesktopFile("an Exec line that is none", "Exec=\"record\n",
                       u"The app could not be started."_s);
        addDesktopFile("a folder that is not there", "Exec=true\nPath=/nowhere\n",
                       u"No such file or directory"_s);
        addDesktopFile("a terminal where there is none", "Exec=true\nTerminal=true\n",
                       u"Unable to find terminal required for application"_s);
        addDesktopFile("a service that is not there", "Exec=true\nDBusActivatable=true\n",
                       u"The name org.example.X was not provided by any .service files"_s);
        QTest::newRow("no desktop file")
            << u"x.desktop"_s << QByteArray("hello") << false << u"The app could not be started."_s;
        QTest::newRow("a file that is no program")
            << u"x"_s << QByteArray("hello") << true << u"Exec format error"_s;
        QTest::newRow("a program for nobody") << u"x"_s << QByteArray("#!/bin/sh\n") << false
                                              << u"“%1” is not an executable program."_s;
    }
    void saysWhyItCannotOpenSomething()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        QFETCH(const bool, isExecutable);
        QFETCH(const QString, reason);
        const File file(name, content, isExecutable);
        QCOMPARE(open(file.path()), reason.contains(u"%1"_s) ? reason.arg(file.path()) : reason);
    }

    void saysThatAFolderIsNoProgram()
    {
        QCOMPARE(open(u"/usr"_s), u"“/usr” is not an executable program."_s);
    }
};

QTEST_GUILESS_MAIN(LinuxWorkspaceTest)
#include "LinuxWorkspaceTest.moc"
