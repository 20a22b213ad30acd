// Writes the programs' manual pages. Run by the build; it is not installed.
#include "hostprogram.h"
#include "manualpage.h"
#include "modelcheckprogram.h"
#include "simulatorprogram.h"

#include <QFile>
#include <QString>

#include <cstdio>

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fputs("usage: orvane-manuals DIRECTORY\n", stderr);
        return 2;
    }
    for (const auto* program :
         {&Orvane::ConsoleHost::hostProgram(), &simulatorProgram(), &modelCheckProgram()}) {
        QFile file(
            QStringLiteral("%1/%2.1").arg(QString::fromLocal8Bit(argv[1]), QLatin1String(program->name)));
        const QByteArray page = Orvane::CommandLine::manualPage(*program);
        if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size() || !file.flush()) {
            std::fprintf(
                stderr, "%s: %s\n", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
            return 1;
        }
    }
    return 0;
}
