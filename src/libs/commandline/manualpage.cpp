#include "manualpage.h"

#include <QStringList>

namespace Orvane::CommandLine {

namespace {

/// A text that `man` takes for no command of its own.
QByteArray plain(const char* text)
{
    QByteArray escaped(text);
    escaped.replace('\\', "\\e").replace('-', "\\-");
    if (escaped.startsWith('.') || escaped.startsWith('\''))
        escaped.prepend("\\&");
    return escaped;
}

QByteArray bold(const QByteArray& text)
{
    return "\\fB" + text + "\\fR";
}

QByteArray italic(const QByteArray& text)
{
    return "\\fI" + text + "\\fR";
}

QByteArray section(const char* title)
{
    return QByteArray(".SH ") + title + '\n';
}

/// A term with its meaning indented below.
QByteArray entry(const QByteArray& term, const QByteArray& text)
{
    return ".TP\n" + term + '\n' + text + '\n';
}

QByteArray optionEntry(const Option& option)
{
    QByteArray term = bold("\\-\\-" + plain(option.name));
    if (option.value)
        term += ' ' + italic(plain(option.value));
    return entry(term, plain(option.text));
}

QByteArray entries(const char* title, const std::vector<Entry>& all)
{
    QByteArray page;
    if (!all.empty())
        page += section(title);
    for (const Entry& one : all)
        page += entry(bold(plain(one.term)), plain(one.text));
    return page;
}

} // namespace

QByteArray manualPage(const Program& program)
{
    const QByteArray name = plain(program.name);
    QByteArray page = ".TH " + QByteArray(program.name).toUpper() + " 1 \"\" \"Orvane EC Proxy Client "
        + ORVANE_VERSION + "\" \"User Commands\"\n";
    page += section("NAME") + name + " \\- " + plain(program.purpose) + '\n';
    page += section("SYNOPSIS") + bold(name) + " [" + italic("options") + ']';
    for (const Entry& argument : program.arguments)
        page += ' ' + italic(plain(argument.term));
    page += '\n' + section("DESCRIPTION");
    for (const char* paragraph : program.description)
        page += (paragraph == program.description.front() ? "" : ".PP\n") + plain(paragraph) + '\n';
    for (const Entry& argument : program.arguments)
        page += entry(italic(plain(argument.term)), plain(argument.text));
    page += section("OPTIONS");
    for (const Option& option : program.options)
        page += optionEntry(option);
    page += entry(bold("\\-h") + ", " + bold("\\-\\-help"), "Show this help.");
    page += entry(bold("\\-v") + ", " + bold("\\-\\-version"), "Show the version.");
    page += entries("EXIT STATUS", program.statuses);
    page += entries("EXAMPLES", program.examples);
    QList<QByteArray> others;
    for (const char* other : program.seeAlso)
        others.append(plain(other));
    if (!others.isEmpty())
        page += section("SEE ALSO") + others.join(",\n") + '\n';
    return page;
}

} // namespace Orvane::CommandLine
