/// Any bytes as a show file.

#include "fuzztarget.h"
#include "jsonmutator.h"

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

Bytes makeInput(Random& random)
{
    static const QByteArray s_example = [] {
        QFile file(QStringLiteral(EXAMPLES "/show.json"));
        check(file.open(QIODevice::ReadOnly), "no example show");
        return file.readAll();
    }();
    return mutateJson(s_example, random);
}

std::size_t caseCount(const Bytes&)
{
    return 1;
}

void tearDown() { }

} // namespace Orvane::Fuzz
