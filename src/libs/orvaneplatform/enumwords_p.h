#pragma once

#include "orvaneplatform_global.h"

#include <QMetaEnum>
#include <QStringList>

/// The words that stand for an enumeration's values in files, commands and events, made from the enumerators:
/// `Tbar_taking` is "tbarTaking", `_SL` is "SL".
namespace Orvane::Internal {

/// All words, in the order of the enumerators.
ORVANEPLATFORM_EXPORT QStringList enumWords(const QMetaEnum& values);

template <typename Enum> QStringList wordsOf()
{
    return enumWords(QMetaEnum::fromType<Enum>());
}

/// Empty when the value is none of the enumerators.
template <typename Enum> QString wordOf(Enum value)
{
    const auto values = QMetaEnum::fromType<Enum>();
    for (int i = 0; i < values.keyCount(); ++i) {
        if (values.value(i) == int(value))
            return enumWords(values).at(i);
    }
    return {};
}

/// The value that the word stands for, which is one of them.
template <typename Enum> Enum valueOf(const QString& word)
{
    return Enum(QMetaEnum::fromType<Enum>().value(wordsOf<Enum>().indexOf(word)));
}

} // namespace Orvane::Internal
