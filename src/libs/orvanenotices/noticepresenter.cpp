#include "noticepresenter.h"

#include "bizmodel/devicelist.h"

#include <QAbstractButton>
#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QQueue>
#include <QStatusBar>
#include <QVBoxLayout>

namespace Orvane::Notices {

using BizModel::DeviceList;
using BizModel::FramelessMessageBoxMsgType;
using BizModel::StatusBarMsgType;

namespace {

/// Has no button, and no key closes it: only the end of what it waits for does.
class WaitingDialog : public QFrame {
public:
    explicit WaitingDialog(QWidget* parent)
        : QFrame(parent, Qt::Dialog | Qt::FramelessWindowHint)
        , m_pText(new QLabel)
    {
        setObjectName(QStringLiteral("waitingDialog"));
        setWindowModality(Qt::ApplicationModal);
        setFrameShape(QFrame::Box);
        auto* busy = new QProgressBar;
        busy->setRange(0, 0);
        busy->setTextVisible(false);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(m_pText);
        layout->addWidget(busy);
    }

    void setText(const QString& text)
    {
        m_pText->setText(text);
        adjustSize();
        // Other than a QDialog this does not find the middle of its parent by itself.
        move(parentWidget()->frameGeometry().center() - rect().center());
    }

private:
    QLabel* const m_pText;
};

QMessageBox::Icon iconOf(FramelessMessageBoxMsgType type)
{
    switch (type) {
    case FramelessMessageBoxMsgType::Question:
        return QMessageBox::Question;
    case FramelessMessageBoxMsgType::Warning:
        return QMessageBox::Warning;
    case FramelessMessageBoxMsgType::Information:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

/// Readable on a light and on a dark window. The window's own color for what is no trouble.
QPalette paletteOf(StatusBarMsgType type)
{
    QPalette palette;
    if (type == StatusBarMsgType::Warning)
        palette.setColor(QPalette::WindowText, QColor(0xe0, 0x80, 0x20));
    else if (type == StatusBarMsgType::Error)
        palette.setColor(QPalette::WindowText, QColor(0xe8, 0x50, 0x50));
    return palette;
}

} // namespace

class Q_DECL_HIDDEN NoticePresenter::Private {
public:
    struct Message {
        FramelessMessageBoxMsgType type = FramelessMessageBoxMsgType::Information;
        QString text;
    };

    Private(NoticePresenter& presenter, DeviceList& devices, QWidget& window)
        : m_presenter(presenter)
        , m_devices(devices)
        , m_window(window)
        , m_waiting(&window)
    {
    }

    void showWaiting(const QString& text);
    void hideWaiting();
    void showNextMessage();
    void messageClosed(bool isQuestion, QMessageBox::StandardButton button);

    NoticePresenter& m_presenter;
    DeviceList& m_devices;
    QWidget& m_window;
    WaitingDialog m_waiting;
    QPointer<QMessageBox> m_pBox;
    QQueue<Message> m_messages;
};

NoticePresenter::NoticePresenter(DeviceList& devices, QWidget& window)
    : d(std::make_unique<Private>(*this, devices, window))
{
    connect(&devices, &DeviceList::signalShowWaitingDialog, this, [this](const QString& text) {
        d->showWaiting(text);
    });
    connect(&devices, &DeviceList::signalHideWaitingDialog, this, [this] { d->hideWaiting(); });
    connect(
        &devices, &DeviceList::signalShowFramelessMessageBoxMsg, this,
        [this](FramelessMessageBoxMsgType type, const QString& text) {
            d->m_messages.enqueue({type, text});
            d->showNextMessage();
        });
}

NoticePresenter::~NoticePresenter() = default;

void NoticePresenter::showMessagesIn(QStatusBar& bar)
{
    connect(
        &d->m_devices, &DeviceList::signalShowStatusBarMsg, &bar,
        [&bar](StatusBarMsgType type, const QString& text, int durationMs) {
            bar.setPalette(paletteOf(type));
            bar.showMessage(text, durationMs);
        });
}

QString NoticePresenter::answer(QMessageBox::StandardButton button)
{
    if (!d->m_pBox)
        return QStringLiteral("no message box is shown");
    QAbstractButton* const shown = d->m_pBox->button(button);
    if (!shown)
        return QStringLiteral("the message box \"%1\" has no such button").arg(d->m_pBox->text());
    shown->click();
    return {};
}

void NoticePresenter::Private::showWaiting(const QString& text)
{
    m_waiting.setText(text);
    m_waiting.show();
}

void NoticePresenter::Private::hideWaiting()
{
    if (!m_waiting.isVisible())
        return;
    m_waiting.hide();
    // Not every window system gives the focus back to where the dialog took it from.
    m_window.activateWindow();
}

void NoticePresenter::Private::showNextMessage()
{
    if (m_pBox || m_messages.isEmpty())
        return;
    const Message message = m_messages.dequeue();
    const bool isQuestion = message.type == FramelessMessageBoxMsgType::Question;
    m_pBox = new QMessageBox(
        iconOf(message.type), QStringLiteral("Console"), message.text,
        isQuestion ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, &m_window,
        Qt::Dialog | Qt::FramelessWindowHint);
    m_pBox->setObjectName(QStringLiteral("messageBox"));
    if (isQuestion)
        m_pBox->setDefaultButton(QMessageBox::No);
    connect(m_pBox, &QMessageBox::finished, &m_presenter, [this, isQuestion](int button) {
        messageClosed(isQuestion, QMessageBox::StandardButton(button));
    });
    m_pBox->open();
    Q_EMIT m_presenter.signalMessageShown(message.type, message.text);
}

void NoticePresenter::Private::messageClosed(bool isQuestion, QMessageBox::StandardButton button)
{
    m_pBox->deleteLater();
    m_pBox = nullptr;
    m_window.activateWindow();
    if (isQuestion)
        Q_EMIT m_devices.signalFramelessMessageBoxClosed(button);
    showNextMessage();
}

} // namespace Orvane::Notices
