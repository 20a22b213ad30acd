#include "consolerecorder.h"

namespace Orvane::ConsolePanel {

Reception ConsoleRecorder::receive(const char* bytes, int size)
{
    Reception reception{decodeDown(bytes, size), {}};
    const auto* datagram = std::get_if<DownDatagram>(&reception.datagram);
    if (!datagram) {
        ++m_nUnreadable;
        return reception;
    }
    ++m_nReceived;
    m_sequences.add(datagram->sequence);
    m_state.apply(datagram->message);
    if (const auto* first = std::get_if<FileFirstPack>(&datagram->message))
        reception.file = m_fileReceiver.add(*first);
    else if (const auto* data = std::get_if<FileDataPack>(&datagram->message))
        reception.file = m_fileReceiver.add(*data);
    if (reception.file.kind == FileReceiver::Outcome::Fault)
        ++m_nFileFaults;
    return reception;
}

} // namespace Orvane::ConsolePanel
