#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QString>
#include <QtGlobal>

namespace Orvane::BizModel {

/// A file on the device. Any thread may call any member at any time; an answer is a snapshot.
class ORVANEPLATFORM_EXPORT File {
public:
    /// The enumeration, by its short name.
    using FileType = Enum::File::FileType;

    /// Suffix of project files; for hosts, the console does not look at it.
    static inline const QString defaultProjectSuffix = QStringLiteral(".orvane");

    File() = default;
    virtual ~File();

    /// Unique among the device's files of this type; of a preset its slot, from 1.
    virtual quint16 fileId() const = 0;
    /// What the file holds.
    virtual FileType fileType() const = 0;
    /// As keys and application show it.
    virtual QString name() const = 0;

private:
    Q_DISABLE_COPY_MOVE(File)
};

} // namespace Orvane::BizModel
