#pragma once

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "records.h"

#include <QStringList>

#include <condition_variable>
#include <mutex>

namespace Orvane::MemoryModel::Test {

constexpr int WaitMs = 5000;
inline const QString A = QStringLiteral("A");
inline const QString B = QStringLiteral("B");
constexpr ScreenKey First{ScreenType::RegularScreen, 1};
constexpr int Mask = BizModel::Enum::Screen::RegularAndAUXScreens;

/// Two devices, "A" and "B", each alone. A has outputs 1 to 3 on a card of 8 units, screens 1 (outputs 1 and
/// 2, selected), 2 (output 3) and 3 (no output), AUX 1 (no output), and inputs 1 (SL), 2 (DL), 3 (4K).
/// Transitions last 50 ms. B has one selected screen with an output.
ShowRecord smallShow();
LayerRecord layerRecord(quint32 id, quint32 inputId, const QRect& window = QRect(0, 0, 960, 540));

/// Names of the list's signals in the order in which they came, from whatever thread.
class SignalLog : private QObject {
public:
    explicit SignalLog(BizModel::DeviceList& list);

    QStringList names() const;
    int count(const QString& name) const { return names().count(name); }
    void clear();
    /// Waits until the signal has come; false when it does not.
    bool waitFor(const QString& name);

private:
    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;
    void add(const QByteArray& name);

    mutable std::mutex m_mutex;
    std::condition_variable m_added;
    QStringList m_names;
};

/// A completion that can be waited for.
class Outcome {
public:
    std::function<void(bool, QString)> completion() const;
    /// False when it does not come.
    bool wait() const;
    bool called() const { return result().calls > 0; }
    bool ok() const { return result().calls == 1 && result().ok; }
    QString text() const { return result().text; }

private:
    struct Result {
        int calls = 0;
        bool ok = false;
        QString text;
    };
    struct State : Result {
        std::mutex mutex;
        std::condition_variable ended;
    };
    Result result() const
    {
        const std::lock_guard lock(m_p->mutex);
        return *m_p;
    }
    std::shared_ptr<State> m_p = std::make_shared<State>();
};

/// The first living object of the list that fits; empty when none does.
template <typename T, typename Fits> std::shared_ptr<T> find(const QList<std::weak_ptr<T>>& list, Fits fits)
{
    for (const auto& weak : list) {
        const auto each = weak.lock();
        if (each && fits(*each))
            return each;
    }
    return nullptr;
}

/// A model with `smallShow`, device A active, and shorthands for what is on it.
struct Model {
    explicit Model(const ShowRecord& show = smallShow());

    std::shared_ptr<BizModel::Device> device(const QString& ipMacSn = A);
    std::shared_ptr<BizModel::Screen> screen(
        quint32 id, ScreenType type = ScreenType::RegularScreen, const QString& device = A);
    std::shared_ptr<ModelControl::Screen> screenControl()
    {
        return ModelControl::Device::screenModelControl(ScreenType::RegularScreen, device());
    }
    /// Input ids of a scene's layers, from the bottom to the top.
    QList<quint32> sources(quint32 screen, BizModel::SceneType scene, const QString& device = A);
    /// Waits until the screen is in the state.
    bool waitForState(quint32 screen, BizModel::Screen::State state);
    Control& control() { return model.control(); }

    MemoryModel model;
    SignalLog log{model.deviceList()};
};

/// Waits until the condition holds, on any change of the model.
bool waitUntil(const std::function<bool()>& condition);

} // namespace Orvane::MemoryModel::Test
