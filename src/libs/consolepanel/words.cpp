#include "words.h"

#include "networkaddress.h"

namespace Orvane::ConsolePanel {

namespace {
/// A day: longer waits are mistakes.
constexpr quint64 LongestMs = 24ULL * 60 * 60 * 1000;
} // namespace

QStringList splitWords(const QString& line, QString& problem)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool inQuotes = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (inQuotes) {
            if (c == QLatin1Char('\\') && i + 1 < line.size())
                word += line.at(++i);
            else if (c == QLatin1Char('"'))
                inQuotes = false;
            else
                word += c;
        } else if (c == QLatin1Char('"')) {
            inWord = inQuotes = true;
        } else if (c.isSpace()) {
            if (inWord)
                words.append(word);
            word.clear();
            inWord = false;
        } else if (c == QLatin1Char('#') && !inWord) {
            break;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inQuotes) {
        problem = QStringLiteral("a quote is not closed");
        return {};
    }
    if (inWord)
        words.append(word);
    return words;
}

bool WordReader::take(const char* word)
{
    if (atEnd() || m_words.at(m_nNext) != QLatin1String(word))
        return false;
    ++m_nNext;
    return true;
}

QString WordReader::text(const char* what)
{
    if (atEnd()) {
        fail(QStringLiteral("%1 is missing").arg(QLatin1String(what)));
        return {};
    }
    return m_words.at(m_nNext++);
}

quint64 WordReader::number(const char* what, quint64 highest)
{
    if (atEnd()) {
        fail(QStringLiteral("%1 is missing").arg(QLatin1String(what)));
        return 0;
    }
    const QString word = m_words.at(m_nNext++);
    const bool isHex = word.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool ok = false;
    const quint64 value = isHex ? word.midRef(2).toULongLong(&ok, 16) : word.toULongLong(&ok, 10);
    if (!ok || value > highest) {
        fail(QStringLiteral("%1 must be a number from 0 to %2, not \"%3\"")
                 .arg(QLatin1String(what), QString::number(highest), word));
        return 0;
    }
    return value;
}

double WordReader::decimal(const char* what, double lowest, double highest)
{
    const QString word = text(what);
    bool ok = false;
    const double value = word.toDouble(&ok);
    if (ok && value >= lowest && value <= highest)
        return value;
    fail(QStringLiteral("%1 must be a number from %2 to %3, not \"%4\"")
             .arg(QLatin1String(what), QString::number(lowest), QString::number(highest), word));
    return lowest;
}

std::chrono::milliseconds WordReader::milliseconds(const char* what)
{
    return std::chrono::milliseconds(number(what, LongestMs));
}

quint32 WordReader::address(const char* what)
{
    const QString word = text(what);
    const auto address = addressFromText(word);
    if (!address)
        fail(QStringLiteral("%1 must be a network address, not \"%2\"").arg(QLatin1String(what), word));
    return address.value_or(0);
}

int WordReader::choice(const char* what, const QStringList& choices)
{
    const QString word = peek();
    const int index = choices.indexOf(word);
    if (index < 0)
        fail(QStringLiteral("%1 must be one of %2, not \"%3\"")
                 .arg(QLatin1String(what), choices.join(QStringLiteral(", ")), word));
    else
        ++m_nNext;
    return index;
}

bool WordReader::onOff(const char* what)
{
    // The places alternate so that the lowest bit is the answer.
    return choice(
               what, {QStringLiteral("off"), QStringLiteral("on"), QStringLiteral("0"), QStringLiteral("1")})
        % 2
        == 1;
}

void WordReader::fail(const QString& problem)
{
    if (m_strProblem.isEmpty())
        m_strProblem = problem;
}

QString WordReader::problem() const
{
    if (m_strProblem.isEmpty() && !atEnd())
        return QStringLiteral("\"%1\" is too much").arg(peek());
    return m_strProblem;
}

} // namespace Orvane::ConsolePanel
