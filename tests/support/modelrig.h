#pragma once

#include "consolerig.h"
#include "control.h"
#include "memorymodel.h"
#include "operations.h"
#include "records.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace Orvane::TestSupport {

/// The in-memory model with a console joined to it, what the model was asked, and what the user would see.
/// As with the console's rig there is one a process. Shows can be loaded one after another.
class ModelRig {
public:
    using Clock = std::chrono::steady_clock;
    struct Notice {
        /// "status TYPE MS TEXT", "box TYPE TEXT", "wait TEXT" or "hide".
        QString text;
        Clock::time_point time;
    };

    explicit ModelRig(
        const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard,
        std::unique_ptr<ConsoleWire> wire = makeDirectWire());
    ~ModelRig();

    /// Replaces what the application works on. False, with the faults in the log, when the show is broken.
    bool load(const MemoryModel::ShowRecord& show);
    /// Ends the console: afterwards the model is alone.
    void endConsole() { m_pConsole.reset(); }

    ConsoleRig& console() { return *m_pConsole; }
    MemoryModel::MemoryModel& model() { return *m_pModel; }
    MemoryModel::Control& control() { return m_pModel->control(); }
    MemoryModel::Operations& operations() { return m_pModel->operations(); }

    /// Empty when there is none.
    std::shared_ptr<BizModel::Device> device(const QString& ipMacSn) const;
    std::shared_ptr<BizModel::Screen> screen(const QString& ipMacSn, MemoryModel::ScreenKey key) const;

    // What the model was asked, in order. Requests that another thread carries out count when they are made.

    /// The arguments of every time that the operation was asked for.
    QStringList asked(MemoryModel::Operation operation) const { return asked(operation, false); }
    /// The same of requests alone: what a thread of the model carries out later does not count, such as
    /// the last sample of an earlier test.
    QStringList requested(MemoryModel::Operation operation) const { return asked(operation, true); }
    bool waitAsked(MemoryModel::Operation operation, int count, int timeoutMs = 5000) const;

    /// The model's thread that is going to carry out the operation waits until `letGo`. At most one operation
    /// is held; not one that the test's own thread carries out.
    void hold(MemoryModel::Operation operation);
    void letGo();

    // What the user would see.

    std::vector<Notice> notices() const;
    int countNotices(const QString& text) const;
    bool waitNotice(const QString& text, int count = 1, int timeoutMs = 5000) const;

    /// Forgets what the model was asked and the notices.
    void forget();

private:
    QStringList asked(MemoryModel::Operation operation, bool onlyRequests) const;
    void addNotice(const QString& text);
    void connectNotices();

    std::unique_ptr<MemoryModel::MemoryModel> m_pModel;
    std::unique_ptr<ConsoleRig> m_pConsole;

    // m_mutex guards m_journal, m_notices and m_held.
    mutable std::mutex m_mutex;
    std::condition_variable m_letGo;
    QString m_held; ///< name of the operation
    std::vector<MemoryModel::JournalEntry> m_journal;
    std::vector<Notice> m_notices;
    QObject m_context;
};

/// A test with a console and a model, and shorthands for what the tests of the keys ask.
class ModelTest : public QObject {
protected:
    explicit ModelTest(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard)
        : m_rig(keyboard)
    {
    }
    ConsoleRig& console() { return m_rig.console(); }
    MemoryModel::Control& control() { return m_rig.control(); }
    /// Presses and releases a key and waits until it was handled.
    bool tap(quint32 key)
    {
        console().tap(key);
        return console().settle();
    }
    void fail(MemoryModel::Operation operation, MemoryModel::Times times = MemoryModel::Times::Once)
    {
        m_rig.operations().fail(operation, "ordered", times);
    }

    ModelRig m_rig;
};

} // namespace Orvane::TestSupport
