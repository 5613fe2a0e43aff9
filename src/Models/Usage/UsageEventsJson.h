#pragma once

#include "Models/Usage/UsageRecords.h"

#include <QByteArray>

#include <functional>

namespace kestrova {

/// The usage log's stored form: an array of one object per event. Keys are the field names, absent
/// optional fields are left out, the UUID is its 36-character upper-case text, the timestamp is
/// seconds since 2001-01-01 00:00:00 UTC.

/// Strict: a missing required key, a wrong type, a number out of its field's range or anything that
/// is not JSON throws JsonDecodingError. Unknown keys are ignored, null counts as absent for the
/// optional fields, of a repeated key the last counts, UUIDs may be written in lower case. Numbers
/// load exactly. Equal names share their memory.
QList<UsageEvent> usageEventsFromJson(const QByteArray &document);

/// Reads in the same way, and calls take with each event and with what the document has for it.
void readUsageEvents(const QByteArray &document,
                     const std::function<void(const UsageEvent &, QByteArrayView text)> &take);

/// Appends the event's object, compact, in UTF-8. Its numbers are finite; they load as the same
/// numbers again.
void appendJson(const UsageEvent &event, QByteArray &document);

} // namespace kestrova
