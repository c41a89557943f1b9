#include "platform/EventFlag.h"
#include "platform/linux/keys/Accelerator.h"

#include <QHash>
#include <QStringList>
#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

std::optional<Accelerator> lxqtAccelerator(const QString &text)
{
    // Shortcuts with any other modifier are rejected by the desktop, or need a key that our
    // combinations lack.
    static const QHash<QString, quint32> eventFlags{
        {u"Shift"_s, shiftEventFlag},
        {u"Control"_s, controlEventFlag},
        {u"Alt"_s, optionEventFlag},
        {u"Meta"_s, commandEventFlag},
    };
    QStringList words = text.split(u'+');
    const QByteArray key = words.takeLast().toLatin1();
    Accelerator accelerator;
    for (const QString &word : words) {
        if (!eventFlags.contains(word))
            return {};
        accelerator.modifiers |= eventFlags.value(word);
    }
    accelerator.keysym =
        xkb_keysym_to_lower(xkb_keysym_from_name(key.constData(), XKB_KEYSYM_NO_FLAGS));
    if (accelerator.keysym == XKB_KEY_NoSymbol || accelerator.keysym == XKB_KEY_VoidSymbol)
        return {};
    return accelerator;
}
