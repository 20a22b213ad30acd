#pragma once

#include <QStringList>

#include <chrono>
#include <optional>

namespace Orvane::ConsolePanel {

/// Splits a command line into its words; empty with `problem` set when a quote is left open.
QStringList splitWords(const QString& line, QString& problem);

/// Takes words one after the other and keeps the first problem, so that a parser can read all it wants and
/// ask once.
class WordReader {
public:
    explicit WordReader(QStringList words)
        : m_words(std::move(words))
    {
    }

    bool atEnd() const { return m_nNext >= m_words.size(); }
    /// The next word without taking it; empty at the end.
    QString peek() const { return atEnd() ? QString() : m_words.at(m_nNext); }
    /// Takes the next word if it is this one.
    bool take(const char* word);
    /// Takes the next word, whatever it is. `what` names it in the problem.
    QString text(const char* what);
    /// A decimal or 0x number up to `highest`.
    quint64 number(const char* what, quint64 highest = 0xFFFFFFFF);
    double decimal(const char* what, double lowest, double highest);
    std::chrono::milliseconds milliseconds(const char* what);
    /// A network address, in any form of `addressFromText`.
    quint32 address(const char* what);
    /// One of the choices, by its place among them.
    int choice(const char* what, const QStringList& choices);
    /// `on`, `off`, `1` or `0`.
    bool onOff(const char* what);

    void fail(const QString& problem);
    bool hasFailed() const { return !m_strProblem.isEmpty(); }
    /// The first problem; words that nobody took are one.
    QString problem() const;

private:
    QStringList m_words;
    int m_nNext = 0;
    QString m_strProblem;
};

} // namespace Orvane::ConsolePanel
