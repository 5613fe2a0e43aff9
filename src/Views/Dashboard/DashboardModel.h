#pragma once

#include "Views/Dashboard/Charts/HeatmapChart.h"
#include "Views/Dashboard/Charts/TrendChart.h"
#include "Views/Dashboard/DashboardRows.h"
#include "Views/Primitives/Controls/PillStatus.h"
#include "Views/Recorder/ShortcutRecorder.h"

#include <QStringList>
#include <qqmlregistration.h>

#include <optional>

namespace kestrova {

/// What the dashboard shows and does; made anew each time that the window opens, with the usage as
/// it is then. Main thread.
class DashboardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")
    Q_PROPERTY(kestrova::PillStatus status READ status NOTIFY statusChanged)

    Q_PROPERTY(QList<kestrova::UsageCard> usageCards READ usageCards NOTIFY usageChanged)
    Q_PROPERTY(QString averageWords READ averageWords NOTIFY usageChanged)
    Q_PROPERTY(QList<kestrova::UsageRow> topApplications READ topApplications NOTIFY usageChanged)
    Q_PROPERTY(QList<kestrova::UsageRow> slotUsage READ slotUsage NOTIFY slotUsageChanged)

    /// Also what cannot be done on this desktop.
    Q_PROPERTY(QString hotbarExplanation READ hotbarExplanation CONSTANT)
    Q_PROPERTY(bool canAssign READ canAssign CONSTANT)
    /// Whether shortcuts are recorded here, or in a dialog of the desktop's that can be opened.
    Q_PROPERTY(bool recordsShortcuts READ recordsShortcuts CONSTANT)
    Q_PROPERTY(bool configuresShortcuts READ configuresShortcuts CONSTANT)
    /// Empty when there is none.
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)
    Q_PROPERTY(int slotCount READ slotCount CONSTANT)
    Q_PROPERTY(
        QList<kestrova::HotbarSlotRow> hotbarSlots READ hotbarSlots NOTIFY hotbarSlotsChanged)
    Q_PROPERTY(kestrova::ShortcutRecorder *recorder READ recorder CONSTANT)

    Q_PROPERTY(QList<QString> periodTitles READ periodTitles CONSTANT)
    Q_PROPERTY(int period READ period NOTIFY periodChanged)
    Q_PROPERTY(QList<QString> chartStyleTitles READ chartStyleTitles CONSTANT)
    Q_PROPERTY(UsageChartStyle chartStyle READ chartStyle NOTIFY chartStyleChanged)
    Q_PROPERTY(QString recordings READ recordings NOTIFY chartChanged)
    Q_PROPERTY(QString words READ words NOTIFY chartChanged)
    Q_PROPERTY(QString minutes READ minutes NOTIFY chartChanged)
    Q_PROPERTY(kestrova::TrendChart trendChart READ trendChart NOTIFY chartChanged)
    Q_PROPERTY(kestrova::HeatmapChart heatmapChart READ heatmapChart NOTIFY chartChanged)

public:
    enum UsageChartStyle { Heatmap, Bar, Line };
    Q_ENUM(UsageChartStyle)

    /// The controller outlives this.
    DashboardModel(AppController &controller, const RecorderKeyboard &keyboard);

    PillStatus status() const;

    QList<UsageCard> usageCards() const;
    QString averageWords() const;
    QList<UsageRow> topApplications() const;
    QList<UsageRow> slotUsage() const;

    QString hotbarExplanation() const;
    bool canAssign() const;
    bool recordsShortcuts() const;
    bool configuresShortcuts() const;
    Q_INVOKABLE void configureShortcuts();
    QString lastError() const;
    Q_INVOKABLE void copyError();
    int slotCount() const;
    QList<HotbarSlotRow> hotbarSlots() const;
    Q_INVOKABLE void assignFrontmost(int slotIndex);
    Q_INVOKABLE void resetShortcut(int slotIndex);
    Q_INVOKABLE void clear(int slotIndex);

    /// Opens the recorder for the slot.
    Q_INVOKABLE void recordShortcut(int slotIndex);
    ShortcutRecorder *recorder() { return &m_recorder; }

    QStringList periodTitles() const;
    int period() const; ///< index among the titles
    Q_INVOKABLE void setPeriod(int period);
    QStringList chartStyleTitles() const;
    UsageChartStyle chartStyle() const { return m_chartStyle; }
    /// The heatmap takes the period to daily; every other period takes the heatmap to bars.
    Q_INVOKABLE void setChartStyle(UsageChartStyle style);
    /// Totals over what the trend chart shows.
    QString recordings() const { return QString::number(m_totals.recordings); }
    QString words() const { return QString::number(m_totals.words); }
    QString minutes() const;
    TrendChart trendChart() const { return m_trendChart; }
    HeatmapChart heatmapChart() const;

Q_SIGNALS:
    void statusChanged();
    void usageChanged();
    void slotUsageChanged();
    void lastErrorChanged();
    void hotbarSlotsChanged();
    void periodChanged();
    void chartStyleChanged();
    void chartChanged();

private:
    void followPeriod();
    void followBuckets();

    AppController &m_controller;
    AppState &m_state;
    ShortcutRecorder m_recorder;
    UsageChartStyle m_chartStyle = Bar;
    UsageSummary m_totals;
    TrendChart m_trendChart;
    mutable std::optional<HeatmapChart> m_heatmapChart; ///< once it has been asked for
};

} // namespace kestrova
