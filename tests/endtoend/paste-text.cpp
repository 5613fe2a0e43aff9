// paste-text TEXT: pastes TEXT into the focused application with Kestrova's own clipboard and key
// events, prints "sent" or "refused", and serves the text until its standard input ends.

#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"
#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("Usage: paste-text TEXT\n", stderr);
        return 2;
    }
    kestrova::X11Pasteboard pasteboard;
    kestrova::PostedKeys postedKeys;
    kestrova::X11KeyEventPosting keyEvents(postedKeys);
    pasteboard.setString(QString::fromUtf8(argv[1]));
    const bool isSent = keyEvents.postCommandV({}) == kestrova::KeyEventPosting::Outcome::sent;
    std::puts(isSent ? "sent" : "refused");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
