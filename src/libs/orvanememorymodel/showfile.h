#pragma once

#include "records.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace Orvane::MemoryModel {

/// Reads a show in JSON; any bytes may be given. None when there is a fault; @p faults then holds every
/// fault as `place: what was expected`, or, of a text that is no JSON, the first place. Any thread.
std::optional<ShowRecord> parseShow(const QByteArray& json, QStringList& faults);

/// The show in JSON; `parseShow` reads it back without a fault.
QByteArray writeShow(const ShowRecord& show);

/// The same from and to a file of at most `MaxShowFileBytes`. Saving replaces the file at once, so that it
/// holds either the old or the new show whatever happens.
std::optional<ShowRecord> loadShowFile(const QString& path, QStringList& faults);
bool saveShowFile(const QString& path, const ShowRecord& show, QString& error);

/// Well above what a show with every limit reached needs.
constexpr qint64 MaxShowFileBytes = qint64(256) * 1024 * 1024;

} // namespace Orvane::MemoryModel
