#include "hoststate_p.h"

#include "ecconstants.h"
#include "log_p.h"

#include <QApplication>
#include <QDynamicPropertyChangeEvent>
#include <QPointer>
#include <QThread>
#include <QWidget>

#include <atomic>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

namespace {

std::atomic<bool> s_bModalWindow{false};
std::atomic<bool> s_bQuenor{false};

// s_windowMutex guards s_window.
std::mutex s_windowMutex;
std::optional<ModalWindowInfo> s_window;

ModalWindowInfo describe(const QWidget& window)
{
    ModalWindowInfo info;
    info.objectName = window.objectName();
    info.pos = window.pos();
    if (const QWidget* child = window.childAt(window.pos())) {
        info.childName = child->objectName();
        if (const QObject* parent = child->parent())
            info.childParentName = parent->objectName();
    }
    return info;
}

/// QWidget's statics are only there in a widgets application; tools run with less.
QWidget* activeModalWidget()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) ? QApplication::activeModalWidget()
                                                                     : nullptr;
}

bool readQuenor()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return app && app->property(Constants::QuenorProperty).toBool();
}

std::optional<ModalWindowInfo> describe(const QWidget* window)
{
    return window ? std::make_optional(describe(*window)) : std::nullopt;
}

void publish(const QWidget* modal)
{
    {
        std::optional<ModalWindowInfo> info = describe(modal);
        const std::lock_guard<std::mutex> lock(s_windowMutex);
        s_window = std::move(info);
    }
    s_bModalWindow = modal != nullptr;
}

/// Lives on the GUI thread as a child of the application object.
class Watcher : public QObject {
public:
    explicit Watcher(QCoreApplication* app)
        : QObject(app)
    {
        app->installEventFilter(this);
        s_bQuenor = readQuenor();
        publish(activeModalWidget());
    }

    ~Watcher() override
    {
        s_bQuenor = false;
        publish(nullptr);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::DynamicPropertyChange:
            if (watched == QCoreApplication::instance())
                s_bQuenor = readQuenor();
            break;
        case QEvent::Show:
            // Qt enters the modal state only after the show event; the operator sees the dialog now. One that
            // works off events meanwhile is looked at once more when its native window is shown.
            if (const QWidget* window = modalWindow(watched))
                publish(window);
            if (watched->isWindowType() || isTopLevel(watched))
                recomputeLater();
            break;
        case QEvent::Hide:
        case QEvent::Close:
        case QEvent::WindowBlocked:
        case QEvent::WindowUnblocked:
            if (watched->isWindowType() || isTopLevel(watched)) {
                publish(activeModalWidget());
                recomputeLater();
            }
            break;
        case QEvent::Move:
            if (watched == activeModalWidget())
                publish(static_cast<QWidget*>(watched));
            break;
        default:
            break;
        }
        return false;
    }

private:
    static bool isTopLevel(const QObject* object)
    {
        return object->isWidgetType() && static_cast<const QWidget*>(object)->isWindow();
    }

    static const QWidget* modalWindow(const QObject* object)
    {
        if (!isTopLevel(object))
            return nullptr;
        const auto* window = static_cast<const QWidget*>(object);
        return window->isModal() ? window : nullptr;
    }

    /// Some of these events come before Qt changes its list of modal windows.
    void recomputeLater()
    {
        if (m_bRecomputePending)
            return;
        m_bRecomputePending = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_bRecomputePending = false;
                publish(activeModalWidget());
            },
            Qt::QueuedConnection);
    }

    bool m_bRecomputePending = false;
};

QPointer<Watcher>& watcher()
{
    static QPointer<Watcher> s_pWatcher; // touched on the GUI thread only
    return s_pWatcher;
}

void startWatching()
{
    if (!watcher())
        watcher() = new Watcher(QCoreApplication::instance());
}

} // namespace

void HostState::watch()
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) {
        ecWarning(
            lcKeys, "No application object: modal windows and the property \"Quenor\" are not watched.");
        return;
    }
    if (isGuiThread())
        startWatching();
    else
        QMetaObject::invokeMethod(app, startWatching, Qt::QueuedConnection);
}

bool HostState::isGuiThread()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return app && app->thread() == QThread::currentThread();
}

bool HostState::hasModalWindow()
{
    return isGuiThread() ? activeModalWidget() != nullptr : s_bModalWindow.load();
}

bool HostState::isQuenor()
{
    return isGuiThread() ? readQuenor() : s_bQuenor.load();
}

bool HostState::isInputBlocked()
{
    return hasModalWindow() || isQuenor();
}

std::optional<ModalWindowInfo> HostState::modalWindow()
{
    if (isGuiThread())
        return describe(activeModalWidget());
    const std::lock_guard<std::mutex> lock(s_windowMutex);
    return s_window;
}

} // namespace Orvane::ECProxy::Client::Internal
