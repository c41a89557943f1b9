#include "platform/linux/instance/InstanceLock.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using State = InstanceLock::State;

class InstanceLockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsSessionsApart_data()
    {
        QTest::addColumn<QByteArrayList>("holder");
        QTest::addColumn<QByteArrayList>("other");
        QTest::addColumn<State>("state");
        const auto row = [](const char *title, const QByteArrayList &holder,
                            const QByteArrayList &other,
                            State state) { QTest::newRow(title) << holder << other << state; };
        row("the same displays", {"/run/w", ":0"}, {"/run/w", ":0"}, State::heldHere);
        row("only the Wayland one known", {"/run/w", ":0"}, {"/run/w"}, State::heldHere);
        row("only the X11 one known", {"/run/w", ":0"}, {":0"}, State::heldHere);
        row("only the X11 one known to the holder", {":0"}, {"/run/w", ":0"}, State::heldHere);
        row("none known", {":0"}, {}, State::heldHere);
        row("none known to the holder", {}, {":0"}, State::heldHere);
        row("another display", {":0"}, {":1"}, State::heldElsewhere);
        row("a display whose name begins alike", {":1"}, {":10"}, State::heldElsewhere);
        row("other displays", {"/run/w", ":0"}, {"/run/v", ":1"}, State::heldElsewhere);
    }
    void tellsSessionsApart()
    {
        QFETCH(const QByteArrayList, holder);
        QFETCH(const QByteArrayList, other);
        const QTemporaryDir folder;
        InstanceLock first(folder.filePath(u"lock"_s));
        QCOMPARE(first.take(holder), State::ours);
        InstanceLock second(folder.filePath(u"lock"_s));
        QTEST(second.take(other), "state");
    }

    void replacesALongerText()
    {
        const QTemporaryDir folder;
        QFile former(folder.filePath(u"lock"_s));
        QVERIFY(former.open(QIODevice::WriteOnly));
        former.write("1234567\n/run/user/1000/wayland-0\n:1\n:2");
        former.close();
        InstanceLock first(former.fileName());
        QCOMPARE(first.take({":0"}), State::ours);
        QVERIFY(former.open(QIODevice::ReadOnly));
        QCOMPARE(former.readAll(), QByteArray::number(getpid()) + "\n:0");
    }

    void isKeptWhenTheFileIsOpenedAndClosed()
    {
        const QTemporaryDir folder;
        InstanceLock first(folder.filePath(u"lock"_s));
        QCOMPARE(first.take({":0"}), State::ours);
        QFile file(folder.filePath(u"lock"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        file.close();
        InstanceLock second(file.fileName());
        QCOMPARE(second.take({":0"}), State::heldHere);
    }
};

QTEST_APPLESS_MAIN(InstanceLockTest)
#include "InstanceLockTest.moc"
