#pragma once

#include "downmessage.h"

#include <map>
#include <optional>

namespace Orvane::ConsolePanel {

/// A file that came whole.
struct ReceivedFile {
    quint8 type = 0; ///< eFlieType
    QByteArray content;
};

/// Puts files together from their packs. Packs carry no name of the transfer they belong to, so one
/// transfer runs at a time: a new first pack gives an unfinished one up.
class FileReceiver {
public:
    /// What a pack brought about.
    struct Outcome {
        enum Kind { Continues, Complete, Fault } kind = Continues;
        QString text; ///< for the log; empty while a transfer simply continues
    };

    /// The packs must come in order, each index one above the last, with the count of the first pack; at
    /// the end the content must have the announced size.
    Outcome add(const FileFirstPack& pack);
    Outcome add(const FileDataPack& pack);

    /// The last complete file of each name.
    const std::map<QString, ReceivedFile>& files() const { return m_files; }

private:
    struct Transfer {
        QString name;
        quint8 type = 0;
        quint32 size = 0;
        quint16 packCount = 0;
        quint16 nextIndex = 1;
        QByteArray content;
    };
    Outcome finishWhenComplete();
    Outcome giveUp(const QString& reason);

    std::optional<Transfer> m_transfer;
    std::map<QString, ReceivedFile> m_files;
};

} // namespace Orvane::ConsolePanel
