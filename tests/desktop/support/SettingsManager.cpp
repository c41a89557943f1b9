#include "support/SettingsManager.h"

#include "fakes/XSettingsContent.h"

#include <cstdlib>

namespace
{
xcb_atom_t atomOf(xcb_connection_t *connection, const QByteArray &name)
{
    const auto request =
        xcb_intern_atom(connection, false, uint16_t(name.size()), name.constData());
    auto *const reply = xcb_intern_atom_reply(connection, request, nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return atom;
}
} // namespace

SettingsManager::SettingsManager(const QByteArray &theme)
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    , m_window(xcb_generate_id(m_connection))
{
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    setTheme(theme);
    announce();
}

SettingsManager::~SettingsManager()
{
    xcb_disconnect(m_connection);
}

void SettingsManager::setTheme(const QByteArray &theme)
{
    const QByteArray content =
        XSettingsContent().addNumber("Xft/DPI", 98304).addText("Net/ThemeName", theme).bytes();
    const xcb_atom_t property = atomOf(m_connection, "_XSETTINGS_SETTINGS");
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, property, 8,
                        uint32_t(content.size()), content.constData());
    xcb_flush(m_connection);
}

void SettingsManager::announce() const
{
    const xcb_atom_t selection = atomOf(m_connection, "_XSETTINGS_S0");
    xcb_set_selection_owner(m_connection, m_window, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t news = {};
    news.response_type = XCB_CLIENT_MESSAGE;
    news.format = 32;
    news.window = m_root;
    news.type = atomOf(m_connection, "MANAGER");
    news.data.data32[0] = XCB_CURRENT_TIME;
    news.data.data32[1] = selection;
    news.data.data32[2] = m_window;
    xcb_send_event(m_connection, false, m_root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&news));
    xcb_flush(m_connection);
}
