#include "Platform/Linux/Applications/ApplicationIdentifier.h"

#include <algorithm>
#include <functional>

namespace kestrova {

namespace {

using Rule = std::function<bool(const DesktopEntry &)>;

bool isSameName(QStringView a, QStringView b)
{
    return !a.isEmpty() && a.compare(b, Qt::CaseInsensitive) == 0;
}

QStringView reverseDnsSuffix(QStringView identifier)
{
    const qsizetype dot = identifier.lastIndexOf(u'.');
    return dot < 0 ? QStringView() : identifier.sliced(dot + 1);
}

// Whether the program is the application itself: not an interpreter or a launcher that is given
// what to run, and not a text program, whose window is the terminal's.
bool namesItsOwnProgram(const DesktopEntry &entry)
{
    const auto isOption = [](const QString &argument) { return argument.startsWith(u'-'); };
    return !entry.runsInTerminal && std::ranges::all_of(entry.arguments, isOption);
}

const DesktopEntry *bestMatch(const QList<DesktopEntry> &entries, const WindowClues &clues,
                              const Rule &matches)
{
    const auto merit = [&](const DesktopEntry &entry) {
        return std::pair(entry.isShown, isSameName(entry.identifier, clues.className) ||
                                            isSameName(entry.identifier, clues.instanceName));
    };
    const DesktopEntry *best = nullptr;
    for (const DesktopEntry &entry : entries) {
        if (matches(entry) && (!best || merit(entry) > merit(*best)))
            best = &entry;
    }
    return best;
}

} // namespace

const DesktopEntry *identifyApplication(const WindowClues &clues,
                                        const QList<DesktopEntry> &entries)
{
    const auto byGtkId = [&](const DesktopEntry &entry) {
        return isSameName(clues.gtkApplicationId, entry.identifier);
    };
    const auto byStartupClass = [](const QString &name) -> Rule {
        return
            [&name](const DesktopEntry &entry) { return isSameName(name, entry.startupWMClass); };
    };
    const auto byIdentifier = [](const QString &name) -> Rule {
        return [&name](const DesktopEntry &entry) { return isSameName(name, entry.identifier); };
    };
    const auto bySuffix = [](const QString &name) -> Rule {
        return [&name](const DesktopEntry &entry) {
            return isSameName(name, reverseDnsSuffix(entry.identifier));
        };
    };
    const auto byPlainCommand = [&](const DesktopEntry &entry) {
        return !clues.executable.isEmpty() && entry.executable == clues.executable &&
               !entry.runsInTerminal && entry.arguments.isEmpty();
    };
    const auto byCommand = [&](const DesktopEntry &entry) {
        return !clues.executable.isEmpty() && entry.executable == clues.executable &&
               namesItsOwnProgram(entry);
    };

    const Rule rules[] = {
        byGtkId,
        byStartupClass(clues.instanceName),
        byStartupClass(clues.className),
        byIdentifier(clues.instanceName),
        byIdentifier(clues.className),
        bySuffix(clues.instanceName),
        bySuffix(clues.className),
        byPlainCommand,
        byCommand,
    };
    for (const Rule &rule : rules) {
        if (const DesktopEntry *entry = bestMatch(entries, clues, rule))
            return entry;
    }
    return nullptr;
}

} // namespace kestrova
