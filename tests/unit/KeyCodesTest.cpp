#include "platform/linux/keys/KeyCodes.h"
#include "hotkeys/KeyboardShortcuts.h"

#include <QTest>
#include <linux/input-event-codes.h>

using namespace Qt::StringLiterals;

class KeyCodesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsWhereTheKeysAre_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<QList<int>>("evdevCodes");
        QTest::addColumn<QStringList>("xkbNames");
        const auto add = [](const char *row, quint32 keyCode, const QList<int> &evdevCodes,
                            const QStringList &xkbNames) {
            QTest::newRow(row) << keyCode << evdevCodes << xkbNames;
        };
        add("A", 0, {KEY_A}, {u"AC01"_s});
        add("K", 40, {KEY_K}, {u"AC08"_s});
        add("the key left of 1", 50, {KEY_GRAVE}, {u"TLDE"_s});
        add("the ISO key", 10, {KEY_102ND}, {u"LSGT"_s});
        add("F1", 122, {KEY_F1}, {u"FK01"_s});
        add("the comma key", 43, {KEY_COMMA}, {u"AB08"_s});
        add("F13 and Print", 105, {KEY_F13, KEY_SYSRQ}, {u"FK13"_s, u"PRSC"_s});
        add("F14 and Scroll Lock", 107, {KEY_F14, KEY_SCROLLLOCK}, {u"FK14"_s, u"SCLK"_s});
        add("F15 and Pause", 113, {KEY_F15, KEY_PAUSE}, {u"FK15"_s, u"PAUS"_s});
        add("no key", 52, {}, {});
        add("far out", 4294967295, {}, {});
    }
    void knowsWhereTheKeysAre()
    {
        QFETCH(const quint32, keyCode);
        QList<int> evdevCodes;
        QStringList xkbNames;
        for (const auto &key : KeyCodes::physicalKeys(VirtualKey(keyCode))) {
            evdevCodes << int(key.evdevCode);
            xkbNames << QString::fromLatin1(key.xkbName);
        }
        QTEST(evdevCodes, "evdevCodes");
        QTEST(xkbNames, "xkbNames");
    }

    void knowsEveryKeyThatHasAName()
    {
        const QList<qint64> named = KeyboardShortcuts::keyNames().keys();
        for (const qint64 keyCode : named)
            QVERIFY2(!KeyCodes::physicalKeys(VirtualKey(keyCode)).isEmpty(),
                     QByteArray::number(keyCode).constData());
    }

    void knowsTheCodeOfAKey()
    {
        QCOMPARE(KeyCodes::virtualKey(EvdevCode(KEY_A)), VirtualKey(0));
        QCOMPARE(KeyCodes::virtualKey(EvdevCode(KEY_SYSRQ)), VirtualKey(105));
        QCOMPARE(KeyCodes::virtualKey(EvdevCode(KEY_CALC)), std::nullopt);
        QCOMPARE(KeyCodes::virtualKey(EvdevCode(4294967295)), std::nullopt);
    }

    void givesEachKeyOneCodeOnly()
    {
        QSet<EvdevCode> seen;
        for (quint32 keyCode = 0; keyCode < 256; ++keyCode) {
            for (const auto &key : KeyCodes::physicalKeys(VirtualKey(keyCode))) {
                QVERIFY2(!seen.contains(key.evdevCode), key.xkbName);
                seen.insert(key.evdevCode);
            }
        }
        QCOMPARE(seen.size(), 123);
    }
};

QTEST_APPLESS_MAIN(KeyCodesTest)
#include "KeyCodesTest.moc"
