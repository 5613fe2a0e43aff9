#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// The atoms of the selection protocol (ICCCM 2, and for the last two the freedesktop.org
/// clipboard manager specification).
struct SelectionAtoms
{
    explicit SelectionAtoms(X11Connection &connection);

    xcb_atom_t clipboard;
    xcb_atom_t targets;
    xcb_atom_t timestamp;
    xcb_atom_t multiple;
    xcb_atom_t atomPair;
    xcb_atom_t incr;
    xcb_atom_t null;
    xcb_atom_t utf8String;
    xcb_atom_t text;
    xcb_atom_t plainText;
    xcb_atom_t plainTextUtf8;
    xcb_atom_t ownProperty; ///< where our own windows keep what concerns a request of ours
    xcb_atom_t clipboardManager;
    xcb_atom_t saveTargets;
};

} // namespace kestrova
