#pragma once

#include "bizmodel/devicelist.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QQueue>

#include <memory>

namespace Orvane::ConsoleHost {

class WaitingDialog;

/// Shows what the console has to say to the user: the waiting dialog and the message boxes, one after
/// another, all modal, so that they hold the console up as they hold up the user. Status-bar messages are the
/// window's. On the GUI thread.
class NoticePresenter : public QObject {
    Q_OBJECT

public:
    /// `parent` is the window that the notices stand over.
    NoticePresenter(const BizModel::DeviceList& devices, QWidget& parent);
    ~NoticePresenter() override;

    /// Presses a button of the message box that is shown.
    /// @return empty, or why there was nothing to press
    QString answer(QMessageBox::StandardButton button);

Q_SIGNALS:
    /// A message box is there and can be answered.
    void signalMessageShown(Orvane::BizModel::FramelessMessageBoxMsgType type, const QString& text);
    /// The user has answered a question.
    void signalAnswered(QMessageBox::StandardButton button);

private:
    struct Message {
        BizModel::FramelessMessageBoxMsgType type = BizModel::FramelessMessageBoxMsgType::Information;
        QString text;
    };

    void showWaiting(const QString& text);
    void hideWaiting();
    void showNextMessage();

    QWidget& m_parent;
    const std::unique_ptr<WaitingDialog> m_pWaiting;
    QPointer<QMessageBox> m_pBox;
    QQueue<Message> m_messages;
};

} // namespace Orvane::ConsoleHost
