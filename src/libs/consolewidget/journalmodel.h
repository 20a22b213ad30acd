#pragma once

#include <QAbstractTableModel>

#include <chrono>
#include <deque>

namespace Orvane::ConsolePanel {

/// Every datagram of both directions: its time, what it says and its bytes. The last `MostEntries` are kept.
/// What is noted shows with the next `flush`; of a burst between two only what will be kept costs anything. A
/// datagram is read when somebody looks at it.
class JournalModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Direction {
        Down, ///< from the library
        Up, ///< to the library
        Lost ///< to the library, and a fault of the wire lost it
    };
    enum Column { TimeColumn, DirectionColumn, TextColumn, HexColumn, ColumnCount };
    static constexpr int MostEntries = 5000;

    explicit JournalModel(QObject* parent = nullptr);

    void note(std::chrono::microseconds time, Direction direction, const QByteArray& datagram);
    void flush();
    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Entry {
        std::chrono::microseconds time{};
        Direction direction = Down;
        QByteArray datagram;
        mutable QString text; ///< read when first looked at
    };
    static QString read(const Entry& entry);

    std::deque<Entry> m_entries;
    std::deque<Entry> m_noted; ///< since the last flush
};

} // namespace Orvane::ConsolePanel
