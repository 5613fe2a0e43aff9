#include "support/Outline.h"

#include "Views/Primitives/Theme/Symbol.h"

#include <QAccessible>
#include <QHash>
#include <QQuickItem>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString roleName(QAccessible::Role role)
{
    static const QHash<QAccessible::Role, QString> names = {
        {QAccessible::AlertMessage, u"alert"_s}, {QAccessible::Button, u"button"_s},
        {QAccessible::Chart, u"chart"_s},        {QAccessible::Dialog, u"dialog"_s},
        {QAccessible::EditableText, u"field"_s}, {QAccessible::Grouping, u"group"_s},
        {QAccessible::Heading, u"heading"_s},    {QAccessible::PageTab, u"tab"_s},
        {QAccessible::PageTabList, u"tabs"_s},   {QAccessible::ProgressBar, u"progress"_s},
        {QAccessible::RadioButton, u"choice"_s}, {QAccessible::StaticText, u"text"_s},
        {QAccessible::ToolBar, u"tool bar"_s},
    };
    return names.value(role, u"role %1"_s.arg(int(role)));
}

QString lineOf(QAccessibleInterface &node, const QQuickItem &item)
{
    const QString name = node.text(QAccessible::Name);
    if (name.isEmpty())
        return {};
    const QAccessible::State state = node.state();
    return roleName(node.role()) + u' ' + name + (item.isEnabled() ? u""_s : u" (disabled)"_s) +
           (state.checked ? u" (checked)"_s : u""_s) + (state.selected ? u" (selected)"_s : u""_s);
}

/// Visits the visible items that assistive technology knows; ends when a visit returns true.
template <typename Visit>
bool visitAccessible(QAccessibleInterface *node, const Visit &visit)
{
    auto *const item = node ? qobject_cast<QQuickItem *>(node->object()) : nullptr;
    if (!node || (item && (!item->isVisible() || visit(*node, *item))))
        return item && item->isVisible();
    for (int i = 0; i < node->childCount(); ++i) {
        if (visitAccessible(node->child(i), visit))
            return true;
    }
    return false;
}

QAccessibleInterface *rootOf(QQuickWindow &window)
{
    return QAccessible::queryAccessibleInterface(&window);
}

void collectSymbols(const QQuickItem &item, QStringList &names)
{
    if (!item.isVisible())
        return;
    if (const auto *symbol = qobject_cast<const Symbol *>(&item))
        names.append(symbol->property("name").toString());
    for (const QQuickItem *child : item.childItems())
        collectSymbols(*child, names);
}

} // namespace

QStringList outline(QQuickWindow &window)
{
    QStringList lines;
    visitAccessible(rootOf(window), [&](QAccessibleInterface &node, const QQuickItem &item) {
        if (const QString line = lineOf(node, item); !line.isEmpty())
            lines.append(line);
        return false;
    });
    return lines;
}

QStringList symbols(QQuickWindow &window)
{
    QStringList names;
    collectSymbols(*window.contentItem(), names);
    return names;
}

QQuickItem *findItem(QQuickWindow &window, const QString &line)
{
    QQuickItem *found = nullptr;
    visitAccessible(rootOf(window), [&](QAccessibleInterface &node, QQuickItem &item) {
        if (lineOf(node, item) == line)
            found = &item;
        return found != nullptr;
    });
    return found;
}

bool pressItem(QQuickWindow &window, const QString &line)
{
    QQuickItem *item = findItem(window, line);
    auto *node = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    auto *actions = node ? node->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(QAccessibleActionInterface::pressAction()))
        return false;
    actions->doAction(QAccessibleActionInterface::pressAction());
    return true;
}

} // namespace kestrova
