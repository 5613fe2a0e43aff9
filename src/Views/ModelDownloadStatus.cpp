#include "Views/ModelDownloadStatus.h"

#include <QLocale>

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

} // namespace

ProgressStatus modelDownloadStatus(const std::optional<DownloadProgress> &progress)
{
    if (!progress)
        return {};
    const QString received = sizeText(progress->receivedBytes);
    const qint64 total = progress->totalBytes.value_or(0);
    if (total <= 0)
        return {.amount = received, .percentage = {}};
    const double fraction = std::clamp(double(progress->receivedBytes) / double(total), 0.0, 1.0);
    return {.amount = u"%1 of %2"_s.arg(received, sizeText(total)),
            .percentage = u"%1%"_s.arg(int(fraction * 100)),
            .fraction = fraction};
}

} // namespace kestrova
