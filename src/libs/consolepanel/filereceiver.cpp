#include "filereceiver.h"

#include "printabletext.h"

#include <QCryptographicHash>

namespace Orvane::ConsolePanel {

FileReceiver::Outcome FileReceiver::add(const FileFirstPack& pack)
{
    Outcome unfinished;
    if (m_transfer)
        unfinished = giveUp(QStringLiteral("another file begins before pack %1 of %2")
                                .arg(m_transfer->nextIndex)
                                .arg(m_transfer->packCount));
    m_transfer = Transfer{pack.name, pack.fileType, pack.fileSize, pack.packCount, 1, pack.chunk};
    Outcome outcome = finishWhenComplete();
    if (unfinished.kind != Outcome::Fault)
        return outcome;
    if (!outcome.text.isEmpty())
        unfinished.text += QStringLiteral("; ") + outcome.text;
    return unfinished;
}

FileReceiver::Outcome FileReceiver::add(const FileDataPack& pack)
{
    if (!m_transfer)
        return {
            Outcome::Fault,
            QStringLiteral("data pack %1 of %2 without a first pack")
                .arg(pack.packIndex)
                .arg(pack.packCount)};
    if (pack.packCount != m_transfer->packCount)
        return giveUp(QStringLiteral("pack count changed from %1 to %2")
                          .arg(m_transfer->packCount)
                          .arg(pack.packCount));
    if (pack.packIndex != m_transfer->nextIndex)
        return giveUp(
            QStringLiteral("pack %1 came where %2 was due").arg(pack.packIndex).arg(m_transfer->nextIndex));
    ++m_transfer->nextIndex;
    m_transfer->content += pack.chunk;
    return finishWhenComplete();
}

FileReceiver::Outcome FileReceiver::finishWhenComplete()
{
    const auto received = quint32(m_transfer->content.size());
    const bool isLast = m_transfer->nextIndex >= m_transfer->packCount;
    if (received > m_transfer->size || (isLast && received != m_transfer->size))
        return giveUp(QStringLiteral("%1 bytes came, %2 were announced").arg(received).arg(m_transfer->size));
    if (!isLast)
        return {};
    const QByteArray sum = QCryptographicHash::hash(m_transfer->content, QCryptographicHash::Sha256).toHex();
    Outcome outcome{
        Outcome::Complete,
        QStringLiteral("file \"%1\" complete: %2 bytes in %3 packs, sha256 %4")
            .arg(
                printable(m_transfer->name), QString::number(received),
                QString::number(m_transfer->packCount), QLatin1String(sum))};
    m_files[m_transfer->name] = ReceivedFile{m_transfer->type, m_transfer->content};
    m_transfer.reset();
    return outcome;
}

FileReceiver::Outcome FileReceiver::giveUp(const QString& reason)
{
    Outcome outcome{
        Outcome::Fault, QStringLiteral("file \"%1\" given up: %2").arg(printable(m_transfer->name), reason)};
    m_transfer.reset();
    return outcome;
}

} // namespace Orvane::ConsolePanel
