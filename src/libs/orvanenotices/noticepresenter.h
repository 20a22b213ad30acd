#pragma once

#include "orvanenotices_global.h"

#include "orvaneplatform/bizmodel/enums.h"

#include <QMessageBox>
#include <QObject>
#include <QString>

#include <memory>

class QStatusBar;

namespace Orvane::BizModel {
class DeviceList;
}

namespace Orvane::Notices {

/// Shows what the console has to say to the user: the waiting dialog and the message boxes, one after
/// another, and the messages of the status bar. The answer to a question goes back to the device list.
///
/// Dialog and boxes are modal: the console ignores most keys while one is open, as it does with the
/// application's own dialogs. On the GUI thread; the device list may emit its notices on any.
class ORVANENOTICES_EXPORT NoticePresenter : public QObject {
    Q_OBJECT

public:
    /// @param devices emits the notices, and gets the answers; outlives the presenter
    /// @param window that the notices stand over; outlives the presenter
    NoticePresenter(BizModel::DeviceList& devices, QWidget& window);
    ~NoticePresenter() override;

    /// Shows status-bar messages there as well: warnings orange, errors red, each as long as the notice says.
    void showMessagesIn(QStatusBar& bar);

    /// Presses a button of the message box that is shown.
    /// @return empty, or why there was nothing to press
    QString answer(QMessageBox::StandardButton button);

Q_SIGNALS:
    /// A message box is there and can be answered.
    void signalMessageShown(Orvane::BizModel::FramelessMessageBoxMsgType type, const QString& text);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Orvane::Notices
