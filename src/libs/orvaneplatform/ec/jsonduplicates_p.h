#pragma once

#include "orvaneplatform_global.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace Orvane::Internal {

/// A position in a text, both numbers from 1; columns count characters.
struct TextPosition {
    int line = 1;
    int column = 1;
};

/// Position of the byte at @p offset of a UTF-8 text; of its end when the offset is beyond it.
ORVANEPLATFORM_EXPORT TextPosition positionAt(const QByteArray& utf8, int offset);

struct DuplicateKey {
    TextPosition position;
    QString key;
};

/// Keys that stand twice in one object of a JSON text that QJsonDocument has accepted: of those it keeps the
/// last value and tells nobody.
ORVANEPLATFORM_EXPORT QList<DuplicateKey> findDuplicateKeys(const QByteArray& validJson);

} // namespace Orvane::Internal
