#include "settings/NewScriptForm.h"

#include "platform/ShortcutLibrary.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// Chosen by eye: as wide as alerts.
constexpr int scriptFormWidth = 400;
} // namespace

NewScriptForm::NewScriptForm(ShortcutLibrary &library, const QString &proposedName,
                             std::function<void(const QString &name, const QString &path)> onCreate,
                             Action onCancel)
    : m_library(library)
    , m_onCreate(std::move(onCreate))
    , m_name(proposedName)
{
    setMinimumWidth(scriptFormWidth);
    setBody(Column{
        padding(20),
        spacing(14),
        text(TextStyle::title2, title()),
        textField(u"Name"_s, u"Name"_s,
                  {
                      .get = [this] { return m_name; },
                      .set = [this](const QString &name) { m_name = name; },
                  }),
        tinted(TextColor::secondary,
               paragraph(TextStyle::caption,
                         u"The script is made in your shortcuts folder. It opens in your text "
                         "editor, where you write what it does."_s)),
        shownWhen([this] { return m_message.has_value(); },
                  announced(tinted(TextColor::error,
                                   paragraph(TextStyle::callout,
                                             [this] { return m_message.value_or(QString()); })))),
        Row{
            spacing(8),
            Spacer{},
            button(u"Cancel"_s, std::move(onCancel)),
            defaultButton(u"Create"_s, [this] { create(); }),
        },
    });
}

QString NewScriptForm::title()
{
    return u"New script"_s;
}

void NewScriptForm::create()
{
    const QString name = m_name.trimmed();
    const auto path = m_library.create(name);
    if (path)
        m_onCreate(name, *path);
    else
        say(m_message, path.error().description);
}
