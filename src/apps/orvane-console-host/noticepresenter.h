#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QQueue>

#include <memory>

namespace Orvane::BizModel {
class DeviceList;
}

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

    /// Presses a button of the message box that is shown; false when there is none, or no such button.
    bool answer(QMessageBox::StandardButton button);

Q_SIGNALS:
    /// The user has answered a question.
    void signalAnswered(QMessageBox::StandardButton button);

private:
    struct Message {
        QMessageBox::Icon icon = QMessageBox::NoIcon;
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
