#include "Views/Dashboard/DashboardModel.h"

#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/Texts/HotkeyTexts.h"
#include "Views/Dashboard/Overview/OverviewRows.h"
#include "Views/Dashboard/UsageText.h"
#include "Views/DictationStatus.h"
#include "Views/ShownPart.h"

#include <QTextBoundaryFinder>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

UsageCard cardOf(const QString &title, const UsageSummary &summary)
{
    return {title, QString::number(summary.recordings), wordsText(summary.words),
            minutesText(summary.minutes)};
}

template <typename T>
QList<qint64> recordingsOf(const QList<T> &rows)
{
    QList<qint64> counts;
    for (const T &row : rows)
        counts.append(row.recordings);
    return counts;
}

QString initialOf(const QString &name)
{
    const QString trimmed = name.trimmed();
    const qsizetype end =
        QTextBoundaryFinder(QTextBoundaryFinder::Grapheme, trimmed).toNextBoundary();
    return trimmed.left(end).toUpper();
}

HotbarSlotRow rowOf(int slotIndex, AppController &controller)
{
    const AppState &state = controller.appState();
    const HotbarSlotAssignment slot = state.settings.get().assignment(slotIndex);
    const HotkeyStatus hotkey = state.hotkeys.get().value(hotbarHotkeyId(slotIndex));
    HotbarSlotRow row;
    row.slotIndex = slotIndex;
    row.title = u"Slot %1"_s.arg(slotIndex);
    row.appName = slot.displayName();
    row.shortcut = controller.hotbarShortcutDisplay(slotIndex);
    row.shortcutHint = hotkeyHint(hotkey, controller.shortcutEditing());
    row.isAssigned = slot.isAssigned();
    if (row.isAssigned)
        row.initial = initialOf(row.appName);
    return row;
}

} // namespace

DashboardModel::DashboardModel(AppController &controller, const RecorderKeyboard &keyboard)
    : m_controller(controller), m_state(controller.appState()), m_recorder(controller, keyboard)
{
    m_controller.refreshUsageAnalytics();
    followBuckets();
    connect(&m_state, &AppState::stateChanged, this, &DashboardModel::statusChanged);
    connect(&m_state, &AppState::usageSnapshotChanged, this, &DashboardModel::usageChanged);
    connect(&m_state, &AppState::usageSnapshotChanged, this, &DashboardModel::slotUsageChanged);
    connect(&m_state, &AppState::settingsChanged, this, &DashboardModel::slotUsageChanged);
    connect(&m_state, &AppState::settingsChanged, this, &DashboardModel::hotbarSlotsChanged);
    connect(&m_state, &AppState::hotkeysChanged, this, &DashboardModel::hotbarSlotsChanged);
    connect(&m_state, &AppState::lastErrorChanged, this, &DashboardModel::lastErrorChanged);
    connect(&m_state, &AppState::usageTrendPeriodChanged, this, &DashboardModel::followPeriod);
    connect(&m_state, &AppState::usageTrendBucketsChanged, this, &DashboardModel::followBuckets);
}

PillStatus DashboardModel::status() const
{
    return dictationStatus(m_state.state.get());
}

QList<UsageCard> DashboardModel::usageCards() const
{
    const UsageDashboardSnapshot &snapshot = m_state.usageSnapshot.get();
    return {cardOf(u"This Hour"_s, snapshot.thisHour), cardOf(u"Today"_s, snapshot.today),
            cardOf(u"This Week"_s, snapshot.thisWeek), cardOf(u"This Month"_s, snapshot.thisMonth)};
}

QString DashboardModel::averageWords() const
{
    return oneDecimal(m_state.usageSnapshot.get().averageWordsPerRecording);
}

QList<UsageRow> DashboardModel::topApplications() const
{
    const QList<TopApplicationUsage> &applications = m_state.usageSnapshot.get().topApplications;
    const QList<double> shares = barShares(recordingsOf(applications));
    QList<UsageRow> rows;
    for (qsizetype i = 0; i < applications.size(); ++i) {
        const QString count = u"%1 rec"_s.arg(applications[i].recordings);
        rows.append({applications[i].appName, count, shares[i]});
    }
    return rows;
}

QList<UsageRow> DashboardModel::slotUsage() const
{
    const QList<OverviewSlotUsageRow> usage =
        overviewSlotUsageRows(m_state.usageSnapshot.get().slotUsage, m_state.settings.get());
    const QList<double> shares = barShares(recordingsOf(usage));
    QList<UsageRow> rows;
    for (qsizetype i = 0; i < usage.size(); ++i) {
        const QString count = QString::number(usage[i].recordings);
        rows.append({usage[i].label, count, shares[i]});
    }
    return rows;
}

QString DashboardModel::hotbarExplanation() const
{
    const QString limits = hotbarLimits(m_controller.workspaceCapabilities());
    return kestrova::hotbarExplanation(m_controller.shortcutEditing()) +
           (limits.isEmpty() ? QString() : u'\n' + limits);
}

bool DashboardModel::canAssign() const
{
    return m_controller.workspaceCapabilities().knowsFront;
}

bool DashboardModel::recordsShortcuts() const
{
    return m_controller.shortcutEditing() == ShortcutEditing::inProgram;
}

bool DashboardModel::configuresShortcuts() const
{
    return m_controller.shortcutEditing() == ShortcutEditing::inDesktopDialog;
}

void DashboardModel::configureShortcuts()
{
    m_controller.configureShortcuts();
}

QString DashboardModel::lastError() const
{
    return shownError(m_state);
}

void DashboardModel::copyError()
{
    m_controller.copy(m_state.lastError.get().value_or(QString()));
}

int DashboardModel::slotCount() const
{
    return HotbarSlotAssignment::slotCount;
}

QList<HotbarSlotRow> DashboardModel::hotbarSlots() const
{
    QList<HotbarSlotRow> rows;
    for (int slotIndex = 1; slotIndex <= slotCount(); ++slotIndex)
        rows.append(rowOf(slotIndex, m_controller));
    return rows;
}

void DashboardModel::assignFrontmost(int slotIndex)
{
    m_controller.assignHotbarSlotFromFrontmost(slotIndex);
}

void DashboardModel::resetShortcut(int slotIndex)
{
    m_controller.updateSettings([slotIndex](AppSettings &settings) {
        settings.setHotbarShortcut(slotIndex, std::nullopt);
    });
}

void DashboardModel::clear(int slotIndex)
{
    m_controller.updateSettings([slotIndex](AppSettings &settings) {
        settings.setHotbarAssignment(slotIndex, std::nullopt, std::nullopt);
    });
}

void DashboardModel::recordShortcut(int slotIndex)
{
    m_recorder.open([this, slotIndex](const HotkeyShortcut &shortcut) {
        m_controller.setHotbarShortcut(slotIndex, shortcut);
    });
}

QStringList DashboardModel::periodTitles() const
{
    return {u"Hourly"_s, u"Daily"_s, u"Weekly"_s, u"Monthly"_s};
}

int DashboardModel::period() const
{
    return int(m_state.usageTrendPeriod.get());
}

void DashboardModel::setPeriod(int period)
{
    m_controller.setUsageTrendPeriod(UsageTrendPeriod(period));
}

QStringList DashboardModel::chartStyleTitles() const
{
    return {u"Heatmap"_s, u"Bar"_s, u"Line"_s};
}

void DashboardModel::setChartStyle(UsageChartStyle style)
{
    if (style == Heatmap && m_state.usageTrendPeriod.get() != UsageTrendPeriod::daily)
        m_controller.setUsageTrendPeriod(UsageTrendPeriod::daily);
    if (style == m_chartStyle)
        return;
    m_chartStyle = style;
    Q_EMIT chartStyleChanged();
}

QString DashboardModel::minutes() const
{
    return oneDecimal(m_totals.minutes);
}

HeatmapChart DashboardModel::heatmapChart() const
{
    if (!m_heatmapChart)
        m_heatmapChart =
            kestrova::heatmapChart(m_state.usageTrendBuckets.get(), m_controller.calendar());
    return *m_heatmapChart;
}

void DashboardModel::followPeriod()
{
    if (m_chartStyle == Heatmap && m_state.usageTrendPeriod.get() != UsageTrendPeriod::daily)
        setChartStyle(Bar);
    Q_EMIT periodChanged();
}

// The buckets come after their period.
void DashboardModel::followBuckets()
{
    const UsageTrendPeriod period = m_state.usageTrendPeriod.get();
    const QList<UsageBucket> buckets =
        usageTrendChartBuckets(period, m_state.usageTrendBuckets.get());
    m_totals = usageTotals(buckets);
    m_trendChart = kestrova::trendChart(period, buckets, m_controller.calendar());
    m_heatmapChart.reset();
    Q_EMIT chartChanged();
}

} // namespace kestrova
