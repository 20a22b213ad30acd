#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

namespace Orvane::MemoryModel {

/// What the model can be asked to do. Queries that only read are not among them, unless a device could
/// refuse them.
enum class Operation {
    SetPresetOperateMode,
    SetActivedScreen,
    CreateDefaultScreen,
    AppendViewingScreen,
    SetScreenState,
    SetUiScreenIndex,
    AddOutput,
    SetScreensSelected,
    CancelScreensSelected,
    UpdateEffectSpeed,
    UpdateEffectType,
    UpdatePGMEditStatus,
    AddLayer,
    RemoveLayers,
    TopZOrder,
    IncrZOrder,
    BottomZOrder,
    DecrZOrder,
    SetLayersSelected,
    CancelLayersSelected,
    UpdateWindow,
    BindSource,
    CheckOperationResources,
    CreatePresetFile,
    RemoveFile,
    CoverPreset,
    CheckPresetData,
    CreateKeypadInfo,
    UpdatePresetModelData,
    EditPresetValidityCheck,
    PresetSelectedScreens,
    SetActivedPreset,
    AddKeypadFile,
    AsyncCreateScreen,
    AsyncRemoveLayer,
    AsyncAddCopyLayers,
    AsyncSaveDeviceData,
    AsyncRemoveFile,
    ParallelTakeScreen,
    ParallelCutScreen,
    ParallelMatchPGM,
    ParallelFreezeScreen,
    ParallelFTBScreen,
    ParallelSetSwapStatus,
    ParallelSetLoadToPresetPGMStatus,
    SetSamplingType,
    SampleTBar,
    SampleLoadPreset
};

/// The enumerator, as it is written.
QString operationName(Operation operation);
/// None when no operation has the name; names are case-sensitive.
std::optional<Operation> findOperation(const QString& name);
/// All names, in the order of the enumerators.
QStringList operationNames();

/// One line of the model's journal.
struct JournalEntry {
    /// How far the operation has come.
    enum class Phase {
        /// Asked for; it is carried out on another thread.
        Requested,
        /// Begins now, on the thread of the entry.
        Started,
        /// What was requested has been carried out, or has failed.
        Ended
    };

    /// Name of the operation.
    QString operation;
    /// `name=value` pairs with blanks between them.
    QString arguments;
    /// How far it has come.
    Phase phase = Phase::Started;
    /// Why it failed; only of an entry that tells an end, and empty when all went well.
    std::optional<QString> failure;
    /// The system's name and number of the thread.
    /// @{
    QString threadName;
    qint64 threadId = 0;
    /// @}
    /// When it was written.
    std::chrono::steady_clock::time_point time;
};

/// Called on the thread that the entry names, on several at once, with no lock held.
using JournalListener = std::function<void(const JournalEntry&)>;

/// How often something that was ordered for an operation applies.
enum class Times { Once, Always };

/// The journal of everything that the model is asked, and the orders to fail or to take longer. Any thread
/// may call any member.
class Operations final {
public:
    /// Replaces the one who hears of every entry; empty for nobody.
    void setListener(JournalListener listener);

    /// @name Orders
    /// @{

    /// The operation fails with @p text. An order for once comes before one for always, and orders for once
    /// add up.
    void fail(Operation operation, const QString& text, Times times);
    /// The operation takes this much longer.
    void delay(Operation operation, std::chrono::milliseconds duration, Times times);
    /// Forgets the orders for the operation.
    void clearOrders(Operation operation);
    /// Forgets all orders.
    void clearAllOrders();
    /// @}

    /// What was ordered for a run of an operation.
    struct Verdict {
        /// How much longer it takes.
        std::chrono::milliseconds delay{0};
        /// Why it fails; empty when it does not.
        std::optional<QString> failure;
    };

    /// Writes an operation into the journal that another thread will carry out.
    void request(Operation operation, const QString& arguments);
    /// Writes an operation into the journal and takes the orders for it, without waiting.
    Verdict start(Operation operation, const QString& arguments);
    /// Writes the end of an operation into the journal that was requested before, with the failure if it has
    /// failed.
    void end(Operation operation, const QString& arguments, const std::optional<QString>& failure);
    /// Writes an operation into the journal and waits as long as was ordered. Answers the error text when
    /// the operation has to fail.
    std::optional<QString> perform(Operation operation, const QString& arguments);

    /// False when the model stops before the time is over.
    bool sleepFor(std::chrono::milliseconds duration);
    /// Ends all waits, present and future.
    void stop();
    /// True once `stop` was called.
    bool stopped() const;

private:
    struct Orders {
        std::deque<QString> failuresOnce;
        std::optional<QString> failureAlways;
        std::deque<std::chrono::milliseconds> delaysOnce;
        std::chrono::milliseconds delayAlways{0};
    };

    void write(
        Operation operation, const QString& arguments, JournalEntry::Phase phase,
        const std::optional<QString>& failure = {});

    /// Guards m_listener, m_orders, m_bStopped.
    mutable std::mutex m_mutex;
    std::condition_variable m_stopping;
    JournalListener m_listener;
    std::map<Operation, Orders> m_orders;
    bool m_bStopped = false;
};

} // namespace Orvane::MemoryModel
