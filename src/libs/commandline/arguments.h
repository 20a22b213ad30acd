#pragma once

#include "exitstatus.h"
#include "program.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <variant>

namespace Orvane::CommandLine {

/// A command line that has been read.
class Arguments {
public:
    bool isSet(const char* option) const { return m_given.contains(QLatin1String(option)); }
    /// What was given last, else the option's preset; empty when there is none.
    QString value(const char* option) const { return m_values.value(QLatin1String(option)); }
    /// The argument with that number, from 0.
    QString argument(int number) const { return m_arguments.at(number); }

private:
    friend std::variant<Arguments, ExitStatus> readArguments(const Program&, const QStringList&);

    QStringList m_given;
    QHash<QString, QString> m_values;
    QStringList m_arguments;
};

/// Reads a command line, which begins with the program's own name. Help and the version are printed on
/// standard output, what is wrong on standard error; the program then ends with the status. Needs no
/// application object.
std::variant<Arguments, ExitStatus> readArguments(const Program& program, const QStringList& commandLine);
std::variant<Arguments, ExitStatus> readArguments(const Program& program, int argc, char* argv[]);

/// A line on standard error, after the program's name.
void complain(const Program& program, const QString& problem);

/// Complains about the command line, and says where help is.
ExitStatus refuse(const Program& program, const QString& problem);

/// A file that is installed with the programs; its name alone when it is not there.
QString installedFile(const QString& name);

/// The text of `--help`.
QString helpText(const Program& program);

} // namespace Orvane::CommandLine
