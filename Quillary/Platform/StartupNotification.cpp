#include "Quillary/Platform/StartupNotification.h"

#include "Quillary/Platform/UserTime.h"

#include <QStringView>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <private/qtx11extras_p.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const std::unique_ptr<xcb_intern_atom_reply_t, FreeReply> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<quint16>(name.size()), name.constData()), nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

/// Sends a message to all launchers, in as many pieces as it takes.
void broadcast(const QByteArray& message) {
    xcb_connection_t* const connection = QX11Info::connection();
    const xcb_window_t root = QX11Info::appRootWindow();
    // Pieces with the same window belong together.
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t rest = atom(connection, "_NET_STARTUP_INFO");
    constexpr qsizetype pieceSize = sizeof event.data;
    // It ends with a zero.
    for (qsizetype start = 0; start <= message.size(); start += pieceSize) {
        const QByteArray piece = message.mid(start, pieceSize).leftJustified(pieceSize, '\0');
        std::copy(piece.begin(), piece.end(), event.data.data8);
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char*>(&event));
        event.type = rest;
    }
    xcb_destroy_window(connection, sender);
    xcb_flush(connection);
}

} // namespace

std::optional<quint32> StartupNotification::time(const QString& startupId) {
    constexpr QLatin1StringView mark = "_TIME"_L1;
    const qsizetype place = startupId.lastIndexOf(mark);
    if (place < 0) {
        return std::nullopt;
    }
    bool isNumber = false;
    const quint32 time = QStringView(startupId).sliced(place + mark.size()).toUInt(&isNumber);
    return isNumber && time != 0 ? std::optional(time) : std::nullopt;
}

QByteArray StartupNotification::endMessage(const QString& startupId) {
    QByteArray message = "remove: ID=\"";
    for (const char byte : startupId.toUtf8()) {
        if (byte == '"' || byte == '\\') {
            message += '\\';
        }
        message += byte;
    }
    return message + '"';
}

void StartupNotification::takeOver(const QString& startupId) {
    if (startupId.isEmpty() || !QX11Info::isPlatformX11()) {
        return;
    }
    // A time of another clock may lie ahead of the server's, which refuses the clipboard and the focus to such times.
    if (const std::optional<quint32> time = StartupNotification::time(startupId);
        time && static_cast<qint32>(QX11Info::getTimestamp() - *time) >= 0) {
        tellQtOfUserTime(*time);
    }
    broadcast(endMessage(startupId));
}

} // namespace quillary
