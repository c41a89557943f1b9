// press-keys KEY...: presses a key combination with real key events, the modifiers first, as soon
// as some program holds it. The keys are named as Linux names them: LEFTCTRL LEFTALT N.
// Ends with 1 if no program holds the combination within 10 seconds.

#include "support/Keyboard.h"

#include <QCoreApplication>
#include <QTest>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{
struct NamedKey {
    QLatin1StringView name;
    int key;
    quint16 modifier = 0;
};

constexpr NamedKey namedKeys[] = {
    {"LEFTCTRL"_L1, KEY_LEFTCTRL, XCB_MOD_MASK_CONTROL},
    {"LEFTSHIFT"_L1, KEY_LEFTSHIFT, XCB_MOD_MASK_SHIFT},
    {"LEFTALT"_L1, KEY_LEFTALT, XCB_MOD_MASK_1},
    {"LEFTMETA"_L1, KEY_LEFTMETA, XCB_MOD_MASK_4},
    {"F"_L1, KEY_F},
    {"M"_L1, KEY_M},
    {"N"_L1, KEY_N},
    {"S"_L1, KEY_S},
    {"W"_L1, KEY_W},
};
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QList<int> keys;
    quint16 modifiers = 0;
    for (const QString &name : QCoreApplication::arguments().sliced(1)) {
        const auto named = std::ranges::find(namedKeys, name, &NamedKey::name);
        if (named == std::end(namedKeys)) {
            std::fprintf(stderr, "press-keys: there is no key named %s\n", qPrintable(name));
            return EXIT_FAILURE;
        }
        keys << named->key;
        modifiers |= named->modifier;
    }
    if (keys.isEmpty())
        return EXIT_FAILURE;

    Keyboard keyboard;
    if (!QTest::qWaitFor([&] { return keyboard.isGrabbed(keys.constLast(), modifiers); }, 10000)) {
        std::fprintf(stderr, "press-keys: no program holds these keys\n");
        return EXIT_FAILURE;
    }
    keyboard.type(keys);
    return EXIT_SUCCESS;
}
