#pragma once

#include "orvaneplatform_global.h"

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QString>

#include <optional>

namespace Orvane::Internal {

/// What is wrong with a text, and where: `line 4, column 17`, both from 1; columns count characters.
struct TextFault {
    QString place;
    QString text;
};

/// The object or list that the text holds; none when it is no JSON, which is the only fault then. Members
/// that stand twice in one object are faults too: QJsonDocument keeps the last of them and tells nobody.
ORVANEPLATFORM_EXPORT std::optional<QJsonValue> parseJson(const QByteArray& utf8, QList<TextFault>& faults);

/// The bytes of a file of at most @p mostBytes, of a special file too; none, with the reason in @p fault,
/// when they cannot be had. @p what is what the file should be: "a keyboard file".
ORVANEPLATFORM_EXPORT std::optional<QByteArray> readFile(
    const QString& path, qint64 mostBytes, const QString& what, QString& fault);

} // namespace Orvane::Internal
