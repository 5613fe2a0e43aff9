#include "Platform/Linux/X11/Clipboard/SelectionServer.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/X11/Clipboard/SelectionWindow.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <algorithm>
#include <array>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

int millisecondsUntil(std::chrono::steady_clock::time_point time)
{
    if (time == std::chrono::steady_clock::time_point::max())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
    return int(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

} // namespace

SelectionServer::SelectionServer(const QByteArray &displayName)
    : m_connection(displayName), m_atoms(m_connection),
      m_wakeDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_connection.isOpen() || m_wakeDescriptor < 0) {
        if (m_wakeDescriptor >= 0)
            close(m_wakeDescriptor);
        throw PlatformError(u"The clipboard is not available: the X server cannot be reached."_s);
    }
    m_window = createSelectionWindow(m_connection);
    m_owner.emplace(m_connection, m_window, m_atoms);
    m_thread = std::thread([this] { run(); });
}

SelectionServer::~SelectionServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    wake();
    if (m_end.get_future().wait_for(handoverLimit + endLimit) == std::future_status::timeout)
        shutdown(xcb_get_file_descriptor(m_connection.xcb()), SHUT_RDWR);
    m_thread.join();
    close(m_wakeDescriptor);
}

std::future<bool> SelectionServer::own(const QString &text, std::shared_ptr<PasteboardOffer> offer)
{
    Takeover takeover{SelectionText(text), std::move(offer), {}};
    std::future<bool> isDone = takeover.isDone.get_future();
    {
        const std::lock_guard lock(m_mutex);
        if (m_hasEnded)
            takeover.isDone.set_value(false);
        else
            m_asked.push_back(std::move(takeover));
    }
    wake();
    return isDone;
}

std::optional<QString> SelectionServer::ownText() const
{
    const std::lock_guard lock(m_mutex);
    if (!m_ownText)
        return std::nullopt;
    return QString::fromUtf8(m_ownText->utf8());
}

void SelectionServer::publish(const std::optional<SelectionText> &text)
{
    const std::lock_guard lock(m_mutex);
    m_ownText = text;
}

void SelectionServer::wake()
{
    eventfd_write(m_wakeDescriptor, 1);
}

void SelectionServer::run()
{
    for (;;) {
        startWhatWasAsked();
        handleEvents();
        m_owner->transfers().giveUpStalled();
        if (isFinished())
            break;
        sleep();
    }
    refuseTakeovers();
    m_end.set_value();
}

void SelectionServer::startWhatWasAsked()
{
    std::deque<Takeover> asked;
    bool isStopping = false;
    {
        const std::lock_guard lock(m_mutex);
        asked.swap(m_asked);
        isStopping = m_isStopping;
    }
    for (Takeover &takeover : asked)
        takeOver(takeover);
    if (isStopping && !m_handoverEnd)
        startHandover();
}

void SelectionServer::handleEvents()
{
    const auto next = [this] {
        if (auto *event = xcb_poll_for_event(m_connection.xcb()))
            return XcbPointer<xcb_generic_event_t>(event);
        // Flushing may read events, and the socket does not wake us up for those.
        xcb_flush(m_connection.xcb());
        return XcbPointer<xcb_generic_event_t>(xcb_poll_for_queued_event(m_connection.xcb()));
    };
    while (const auto event = next())
        handle(*event);
}

void SelectionServer::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_NOTIFY) {
        const auto &notify = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
        m_isHandedOver = m_isHandedOver || notify.selection == m_atoms.clipboardManager;
    }
    m_owner->handle(event);
    if (type == XCB_SELECTION_CLEAR && !m_owner->owns(m_atoms.clipboard))
        publish(std::nullopt);
}

void SelectionServer::takeOver(Takeover &takeover)
{
    // A real time, and not CurrentTime (ICCCM 2.1). What came before it is about the text of
    // before.
    const xcb_timestamp_t time = serverTime(m_connection);
    handleEvents();
    const bool isDone = m_owner->own(takeover.text, takeover.offer, time);
    if (m_owner->owns(m_atoms.clipboard))
        publish(takeover.text);
    takeover.isDone.set_value(isDone);
}

void SelectionServer::startHandover()
{
    m_handoverEnd = Clock::now() + handoverLimit;
    const XcbPointer<xcb_get_selection_owner_reply_t> manager(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), m_atoms.clipboardManager),
        nullptr));
    m_isHandedOver = !manager || manager->owner == XCB_WINDOW_NONE;
    if (isFinished())
        return;
    const std::array targets{m_atoms.utf8String, m_atoms.plainTextUtf8, m_atoms.plainText};
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, m_window, m_atoms.ownProperty,
                        XCB_ATOM_ATOM, 32, targets.size(), targets.data());
    xcb_convert_selection(m_connection.xcb(), m_window, m_atoms.clipboardManager,
                          m_atoms.saveTargets, m_atoms.ownProperty, m_owner->ownedSince());
}

bool SelectionServer::isFinished() const
{
    if (!m_connection.isOpen())
        return true;
    return m_handoverEnd &&
           (m_isHandedOver || !m_owner->owns(m_atoms.clipboard) || Clock::now() >= *m_handoverEnd);
}

void SelectionServer::sleep()
{
    const Clock::time_point end = std::min(m_owner->transfers().firstDeadline(),
                                           m_handoverEnd.value_or(Clock::time_point::max()));
    std::array<pollfd, 2> descriptors{
        {{xcb_get_file_descriptor(m_connection.xcb()), POLLIN, 0}, {m_wakeDescriptor, POLLIN, 0}}};
    poll(descriptors.data(), descriptors.size(), millisecondsUntil(end));
    eventfd_t ignored = 0;
    eventfd_read(m_wakeDescriptor, &ignored);
}

void SelectionServer::refuseTakeovers()
{
    std::deque<Takeover> asked;
    {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
        m_ownText.reset();
        asked.swap(m_asked);
    }
    for (Takeover &takeover : asked)
        takeover.isDone.set_value(false);
}

} // namespace kestrova
