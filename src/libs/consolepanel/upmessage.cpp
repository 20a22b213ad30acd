#include "upmessage.h"

#include "networkaddress.h"
#include "statetext.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

/// A datagram with head and tag in place and a zeroed value of `valueSize` bytes.
QByteArray frame(eECUpMessageTag tag, quint16 sequence, int valueSize)
{
    QByteArray datagram(ECValueOffset + valueSize, '\0');
    ECProtocolHead head;
    head.Head = ECUpMagic;
    head.Sequence = sequence;
    head.ContentLength = quint16(ECTLSize + valueSize);
    Wire::write(head, datagram.data());
    Wire::write(ECProtocolTL{quint16(tag), quint16(valueSize)}, datagram.data() + ECHeadSize);
    return datagram;
}

template <typename Record> QByteArray recordFrame(eECUpMessageTag tag, quint16 sequence, const Record& record)
{
    QByteArray datagram = frame(tag, sequence, sizeof(Record));
    Wire::write(record, datagram.data() + ECValueOffset);
    return datagram;
}

} // namespace

QByteArray encodeUp(const UpMessage& message, quint16 sequence)
{
    return std::visit(
        Overloaded{
            [&](const KeyReport& report) {
                QByteArray datagram = frame(
                    report.pressed ? ReportECButtonPressed : ReportECButtonRelease, sequence,
                    sizeof(ECButtonOperState));
                Wire::Writer put(datagram.data() + ECValueOffset);
                put(report.key);
                put(quint8(report.pressed ? Pressed : Release));
                return datagram;
            },
            [&](const ECTBarValue& position) { return recordFrame(ReportECTBarValue, sequence, position); },
            [&](const LockReport& report) {
                QByteArray datagram = frame(
                    report.target == LockTarget::TBar ? ReportLockedTBar : ReportLockedKeyboard, sequence, 1);
                datagram[ECValueOffset] = char(report.locked ? 1 : 0);
                return datagram;
            },
            [&](const DviReport& report) {
                const int recordSize = sizeof(DVIInSignal);
                QByteArray datagram =
                    frame(ReportDVIInSignal, sequence, int(report.signalStates.size()) * recordSize);
                char* out = datagram.data() + ECValueOffset;
                for (const DVIInSignal& state : report.signalStates) {
                    Wire::write(state, out);
                    out += recordSize;
                }
                return datagram;
            },
            [&](const ECDeviceIPData& record) { return recordFrame(ReportECDeviceIP, sequence, record); },
        },
        message);
}

std::optional<UpMessage> decodeUp(const QByteArray& datagram)
{
    const int size = datagram.size() - ECValueOffset;
    if (size < 0 || Wire::load<quint32>(datagram.constData()) != ECUpMagic)
        return std::nullopt;
    const char* const value = datagram.constData() + ECValueOffset;
    Wire::Reader in(value);
    const auto tag = Wire::load<quint16>(datagram.constData() + ECHeadSize);
    switch (tag) {
    case ReportECButtonPressed:
    case ReportECButtonRelease:
        if (size != int(sizeof(ECButtonOperState)))
            return std::nullopt;
        return KeyReport{tag == ReportECButtonPressed, in.next<quint32>()};
    case ReportECTBarValue: {
        if (size != int(sizeof(ECTBarValue)))
            return std::nullopt;
        ECTBarValue position;
        position.Value = in.next<quint32>();
        position.IsBottomToTop = in.next<quint8>();
        return position;
    }
    case ReportLockedTBar:
    case ReportLockedKeyboard:
        if (size != 1)
            return std::nullopt;
        return LockReport{tag == ReportLockedTBar ? LockTarget::TBar : LockTarget::Keypad, *value != 0};
    case ReportDVIInSignal: {
        if (size % int(sizeof(DVIInSignal)) != 0)
            return std::nullopt;
        DviReport report;
        for (int i = 0; i < size; i += int(sizeof(DVIInSignal)))
            report.signalStates.push_back({quint8(value[i]), quint8(value[i + 1])});
        return report;
    }
    case ReportECDeviceIP: {
        if (size != int(sizeof(ECDeviceIPData)))
            return std::nullopt;
        ECDeviceIPData record;
        record.Index = in.next<quint8>();
        record.Status = in.next<quint8>();
        record.IP = in.next<quint32>();
        record.Mask = in.next<quint32>();
        record.Gateway = in.next<quint32>();
        return record;
    }
    default:
        return std::nullopt;
    }
}

QString describe(const UpMessage& message)
{
    return std::visit(
        Overloaded{
            [](const KeyReport& report) {
                return QStringLiteral("%1 %2")
                    .arg(report.pressed ? QStringLiteral("press") : QStringLiteral("release"))
                    .arg(report.key);
            },
            [](const ECTBarValue& position) {
                return QStringLiteral("tbar %1 %2")
                    .arg(quint32(position.Value))
                    .arg(
                        position.IsBottomToTop == BottomToTop ? QStringLiteral("up")
                                                              : QStringLiteral("down"));
            },
            [](const LockReport& report) {
                return QStringLiteral("%1 lock %2")
                    .arg(
                        report.target == LockTarget::TBar ? QStringLiteral("tbar") : QStringLiteral("keypad"))
                    .arg(onOffText(report.locked));
            },
            [](const DviReport& report) {
                QString text = QStringLiteral("dvi");
                for (const DVIInSignal& state : report.signalStates)
                    text += QStringLiteral(" %1:%2").arg(state.Index).arg(onOffText(state.Signal != 0));
                return text;
            },
            [](const ECDeviceIPData& record) {
                return QStringLiteral("console-ip %1 status %2 address %3 mask %4 gateway %5")
                    .arg(record.Index)
                    .arg(record.Status)
                    .arg(addressText(record.IP), addressText(record.Mask), addressText(record.Gateway));
            },
        },
        message);
}

} // namespace Orvane::ConsolePanel
