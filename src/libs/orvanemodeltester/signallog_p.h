#pragma once

#include "bizmodel/devicelist.h"
#include "modelfault.h"

#include <QHash>
#include <QObject>
#include <QPair>
#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace Orvane::ModelTest::Internal {

/// The signals of a stretch of time. Any thread.
class SignalWindow final {
public:
    /// How often the signal has come that names the object in its last argument.
    int times(const QString& signal, const void* object) const;
    /// How often it has come, whatever it named.
    int times(const QString& signal) const;

private:
    friend class SignalLog;
    void add(const QString& signal, const void* object);

    /// Guards m_counts; signals come on any thread.
    mutable std::mutex m_mutex;
    /// With null for any object.
    QHash<QPair<QString, const void*>, int> m_counts;
};

/// What a model's signals have told, in their order. Finds signals that come twice or out of order.
class SignalLog final : public QObject {
public:
    /// @p delivered is called within each signal, with its name, and @p found for a signal that breaks a
    /// rule; both on the signal's thread.
    SignalLog(
        BizModel::DeviceList& model, std::function<void(const QString&)> delivered,
        std::function<void(const ModelFault&)> found);

    /// Signals so far.
    quint64 count() const;
    /// Whether the signal has come after so many.
    bool cameSince(const QString& signal, quint64 count) const;
    /// Opens a window, which ends when the pointer does.
    std::shared_ptr<const SignalWindow> open();

private:
    /// What the signals have told of one object's coming and going.
    struct Life {
        std::weak_ptr<const void> object;
        QString named; ///< by which signal last
        bool isAdded = false;
        bool isRemoved = false;
        std::thread::id removedOn;
    };

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;
    void watchObjects(BizModel::DeviceList& model);
    void came(const QString& signal);
    void addToWindows(const QString& signal, const void* object);
    void named(const QString& signal, const std::shared_ptr<const void>& object);
    /// The fault of a signal that names the object now, if it is one; its seen is empty otherwise.
    static QString findFault(Life& life, const QString& signal, QString& rule);
    Life& lifeOf(const std::shared_ptr<const void>& object);

    const std::function<void(const QString&)> m_delivered;
    const std::function<void(const ModelFault&)> m_found;

    /// Guards all that follows; signals come on any thread.
    mutable std::mutex m_mutex;
    quint64 m_nSignals = 0;
    /// Number of the last signal of each name.
    QHash<QString, quint64> m_lastSignals;
    std::list<std::weak_ptr<SignalWindow>> m_windows;
    std::list<Life> m_lives;
};

} // namespace Orvane::ModelTest::Internal
