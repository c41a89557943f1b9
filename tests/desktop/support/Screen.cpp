#include "support/Screen.h"

#include "platform/linux/x11/X11Connection.h"

#include <algorithm>
#include <span>

Screen::Screen()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_screen(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data)
{
}

Screen::~Screen()
{
    xcb_disconnect(m_connection);
}

QRect Screen::geometry() const
{
    return {0, 0, m_screen->width_in_pixels, m_screen->height_in_pixels};
}

QImage Screen::picture(const QRect &place) const
{
    const auto request =
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root, qint16(place.x()),
                      qint16(place.y()), quint16(place.width()), quint16(place.height()), ~0U);
    const auto reply = owned(xcb_get_image_reply(m_connection, request, nullptr));
    if (!reply)
        return {};
    return QImage(xcb_get_image_data(reply.get()), place.width(), place.height(),
                  QImage::Format_RGB32)
        .copy();
}

QList<QRect> Screen::windows() const
{
    const auto tree = owned(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_screen->root), nullptr));
    const std::span children(xcb_query_tree_children(tree.get()),
                             size_t(xcb_query_tree_children_length(tree.get())));
    QList<QRect> places;
    for (const xcb_window_t window : children) {
        if (const auto place = placeOf(window))
            places << *place;
    }
    return places;
}

std::optional<QRect> Screen::placeOf(xcb_window_t window) const
{
    const auto attributesRequest = xcb_get_window_attributes(m_connection, window);
    const auto geometryRequest = xcb_get_geometry(m_connection, window);
    const auto attributes =
        owned(xcb_get_window_attributes_reply(m_connection, attributesRequest, nullptr));
    const auto geometry = owned(xcb_get_geometry_reply(m_connection, geometryRequest, nullptr));
    // It may have gone in the meantime.
    if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE
        || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
        return {};
    return QRect(geometry->x, geometry->y, geometry->width, geometry->height);
}

int contrast(const QImage &picture)
{
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            darkest = std::min(darkest, qGray(picture.pixel(x, y)));
            lightest = std::max(lightest, qGray(picture.pixel(x, y)));
        }
    }
    return lightest - darkest;
}
