#include "journalmodel.h"

#include "downdecoder.h"
#include "downdescription.h"
#include "upmessage.h"

namespace Orvane::ConsolePanel {

JournalModel::JournalModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void JournalModel::note(std::chrono::microseconds time, Direction direction, const QByteArray& datagram)
{
    m_noted.push_back({time, direction, datagram, {}});
    if (m_noted.size() > MostEntries)
        m_noted.pop_front();
}

void JournalModel::flush()
{
    if (m_noted.empty())
        return;
    const int count = int(m_noted.size());
    const int surplus =
        std::min(int(m_entries.size()), std::max(0, int(m_entries.size()) + count - MostEntries));
    if (surplus > 0) {
        beginRemoveRows({}, 0, surplus - 1);
        m_entries.erase(m_entries.begin(), m_entries.begin() + surplus);
        endRemoveRows();
    }
    const int first = int(m_entries.size());
    beginInsertRows({}, first, first + count - 1);
    std::move(m_noted.begin(), m_noted.end(), std::back_inserter(m_entries));
    m_noted.clear();
    endInsertRows();
}

void JournalModel::clear()
{
    beginResetModel();
    m_entries.clear();
    m_noted.clear();
    endResetModel();
}

int JournalModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

int JournalModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant JournalModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role != Qt::DisplayRole)
        return {};
    const Entry& entry = m_entries[std::size_t(index.row())];
    switch (index.column()) {
    case TimeColumn:
        return QString::number(double(entry.time.count()) / 1e6, 'f', 3);
    case DirectionColumn:
        return entry.direction == Down ? QStringLiteral("<")
            : entry.direction == Up    ? QStringLiteral(">")
                                       : QStringLiteral("> lost");
    case TextColumn:
        if (entry.text.isEmpty())
            entry.text = read(entry);
        return entry.text;
    default:
        return QString::fromLatin1(entry.datagram.toHex(' '));
    }
}

QVariant JournalModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList titles = {
        QStringLiteral("Time"), QStringLiteral("Way"), QStringLiteral("Message"), QStringLiteral("Bytes")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return titles.value(section);
}

QString JournalModel::read(const Entry& entry)
{
    if (entry.direction == Down) {
        const auto decoded = decodeDown(entry.datagram.constData(), entry.datagram.size());
        if (const auto* unreadable = std::get_if<Unreadable>(&decoded))
            return QStringLiteral("unreadable, ") + unreadable->reason;
        return describe(std::get<DownDatagram>(decoded));
    }
    const auto report = decodeUp(entry.datagram);
    return report ? describe(*report) : QStringLiteral("malformed");
}

} // namespace Orvane::ConsolePanel
