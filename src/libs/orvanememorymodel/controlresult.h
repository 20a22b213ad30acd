#pragma once

#include <QString>

namespace Orvane::MemoryModel {

/// Whether something was done, and if not, why.
class ControlResult final {
public:
    /// It was done.
    static ControlResult done() { return {}; }
    /// It was not.
    /// @param reason what is not there or which state forbids it, in words for the user
    static ControlResult refused(const QString& reason)
    {
        ControlResult result;
        result.m_strReason = reason;
        return result;
    }
    /// Refused with the reason unless `isDone`.
    static ControlResult of(bool isDone, const QString& reason) { return isDone ? done() : refused(reason); }

    /// True when it was done.
    explicit operator bool() const { return m_strReason.isEmpty(); }
    /// Empty when it was done.
    const QString& reason() const { return m_strReason; }

private:
    QString m_strReason;
};

} // namespace Orvane::MemoryModel
