#include "Platform/Linux/X11/Clipboard/SelectionAtoms.h"

namespace kestrova {

SelectionAtoms::SelectionAtoms(X11Connection &connection)
    : clipboard(connection.atom("CLIPBOARD")), targets(connection.atom("TARGETS")),
      timestamp(connection.atom("TIMESTAMP")), multiple(connection.atom("MULTIPLE")),
      atomPair(connection.atom("ATOM_PAIR")), incr(connection.atom("INCR")),
      null(connection.atom("NULL")), utf8String(connection.atom("UTF8_STRING")),
      text(connection.atom("TEXT")), plainText(connection.atom("text/plain")),
      plainTextUtf8(connection.atom("text/plain;charset=utf-8")),
      ownProperty(connection.atom("KESTROVA_SELECTION")),
      clipboardManager(connection.atom("CLIPBOARD_MANAGER")),
      saveTargets(connection.atom("SAVE_TARGETS"))
{
}

} // namespace kestrova
