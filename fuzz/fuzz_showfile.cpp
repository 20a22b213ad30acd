/// Any bytes as a show file.

#include "fuzztarget.h"

#include "showfile.h"

#include <QFile>

namespace Orvane::Fuzz {

void setUp(int&, char**) { }

void run(const Bytes& input)
{
    const QByteArray json(reinterpret_cast<const char*>(input.data()), int(input.size()));
    QStringList faults;
    const auto show = MemoryModel::parseShow(json, faults);
    check(show.has_value() == faults.isEmpty(), "neither a show nor a fault, or both");
    if (!show)
        return;
    QStringList again;
    const QByteArray written = MemoryModel::writeShow(*show);
    const auto reread = MemoryModel::parseShow(written, again);
    check(reread && MemoryModel::writeShow(*reread) == written, "a show changes by being written and read");
}

void tearDown() { }

} // namespace Orvane::Fuzz
