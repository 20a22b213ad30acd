#include "noticepresenter.h"

#include <QAbstractButton>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace Orvane::ConsoleHost {

using BizModel::DeviceList;
using BizModel::FramelessMessageBoxMsgType;

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

namespace {

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

} // namespace

NoticePresenter::NoticePresenter(const DeviceList& devices, QWidget& parent)
    : m_parent(parent)
    , m_pWaiting(std::make_unique<WaitingDialog>(&parent))
{
    connect(&devices, &DeviceList::signalShowWaitingDialog, this, &NoticePresenter::showWaiting);
    connect(&devices, &DeviceList::signalHideWaitingDialog, this, &NoticePresenter::hideWaiting);
    connect(
        &devices, &DeviceList::signalShowFramelessMessageBoxMsg, this,
        [this](FramelessMessageBoxMsgType type, const QString& text) {
            m_messages.enqueue({type, text});
            showNextMessage();
        });
}

NoticePresenter::~NoticePresenter() = default;

QString NoticePresenter::answer(QMessageBox::StandardButton button)
{
    if (!m_pBox)
        return QStringLiteral("no message box is shown");
    QAbstractButton* const shown = m_pBox->button(button);
    if (!shown)
        return QStringLiteral("the message box \"%1\" has no such button").arg(m_pBox->text());
    shown->click();
    return {};
}

void NoticePresenter::showWaiting(const QString& text)
{
    m_pWaiting->setText(text);
    m_pWaiting->show();
}

void NoticePresenter::hideWaiting()
{
    if (!m_pWaiting->isVisible())
        return;
    m_pWaiting->hide();
    // Not every window system gives the focus back to where the dialog took it from.
    m_parent.activateWindow();
}

void NoticePresenter::showNextMessage()
{
    if (m_pBox || m_messages.isEmpty())
        return;
    const Message message = m_messages.dequeue();
    const bool isQuestion = message.type == FramelessMessageBoxMsgType::Question;
    m_pBox = new QMessageBox(
        iconOf(message.type), QStringLiteral("Console"), message.text,
        isQuestion ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, &m_parent,
        Qt::Dialog | Qt::FramelessWindowHint);
    m_pBox->setObjectName(QStringLiteral("messageBox"));
    if (isQuestion)
        m_pBox->setDefaultButton(QMessageBox::No);
    connect(m_pBox, &QMessageBox::finished, this, [this, isQuestion](int button) {
        m_pBox->deleteLater();
        m_pBox = nullptr;
        m_parent.activateWindow();
        if (isQuestion)
            Q_EMIT signalAnswered(QMessageBox::StandardButton(button));
        showNextMessage();
    });
    m_pBox->open();
    Q_EMIT signalMessageShown(message.type, message.text);
}

} // namespace Orvane::ConsoleHost
