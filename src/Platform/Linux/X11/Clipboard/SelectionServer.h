#pragma once

#include "Platform/Linux/X11/Clipboard/SelectionOwner.h"

#include <QString>

#include <chrono>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <thread>

namespace kestrova {

/// A thread and a connection that own CLIPBOARD and PRIMARY, so that other applications are
/// answered at once whatever our other threads do. It sleeps while nobody asks.
class SelectionServer
{
public:
    /// How long the destructor waits for a clipboard manager to save the text, which otherwise
    /// is lost with its owner. Saving takes milliseconds, but xfce4-clipman 1.6 never says that
    /// it is done: this is then what it costs to end.
    static constexpr std::chrono::milliseconds handoverLimit{500};
    /// How long the destructor then waits for an X server that does not answer.
    static constexpr std::chrono::milliseconds endLimit{500};

    /// An empty name means $DISPLAY. Throws PlatformError when the X server cannot be reached.
    explicit SelectionServer(const QByteArray &displayName);
    /// Hands the text on CLIPBOARD over to the clipboard manager, if there is one.
    ~SelectionServer();
    SelectionServer(const SelectionServer &) = delete;
    SelectionServer &operator=(const SelectionServer &) = delete;

    /// Takes both selections over. The future becomes true once the server has confirmed it,
    /// and false when it refused or died. The offer is told who asks. Any thread; never blocks.
    std::future<bool> own(const QString &text, std::shared_ptr<PasteboardOffer> offer);
    /// The text that we own on CLIPBOARD; none when somebody else has taken it. Any thread.
    std::optional<QString> ownText() const;

private:
    using Clock = std::chrono::steady_clock;
    struct Takeover
    {
        SelectionText text;
        std::shared_ptr<PasteboardOffer> offer;
        std::promise<bool> isDone;
    };

    void run();
    void startWhatWasAsked();
    void handleEvents();
    void handle(const xcb_generic_event_t &event);
    void takeOver(Takeover &takeover);
    void startHandover();
    bool isFinished() const;
    void sleep();
    void wake();
    void publish(const std::optional<SelectionText> &text);
    void refuseTakeovers();

    X11Connection m_connection;
    const SelectionAtoms m_atoms;
    const int m_wakeDescriptor;

    mutable std::mutex m_mutex; // guards the next four
    std::deque<Takeover> m_asked;
    std::optional<SelectionText> m_ownText;
    bool m_isStopping = false;
    bool m_hasEnded = false;

    // The thread's own.
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::optional<SelectionOwner> m_owner;
    std::optional<Clock::time_point> m_handoverEnd; // set: stopping
    bool m_isHandedOver = false;

    std::promise<void> m_end;
    std::thread m_thread;
};

} // namespace kestrova
