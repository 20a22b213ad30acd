#pragma once

#include "bizmodel/devicelist.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Orvane::ModelTest::Internal {

/// What a model says of itself at one time.
struct ModelSnapshot {
    struct Value {
        QString text;
        /// Each of these signals announces a change of the value; none when there is no such signal.
        QStringList announcedBy;
    };

    /// By the name of the thing, for example `screen regular:1 freeze`.
    QMap<QString, Value> values;
    /// Snapshots of one query are numbered from 1; 0 is none.
    quint64 number = 0;
};

/// Asks the active device of the list for everything. Any thread.
ModelSnapshot takeSnapshot(const BizModel::DeviceList& list);

/// Names of the values that differ; those that are in one of the snapshots only are left out.
QStringList differences(const ModelSnapshot& before, const ModelSnapshot& after);

} // namespace Orvane::ModelTest::Internal
