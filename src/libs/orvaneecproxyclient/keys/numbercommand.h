#pragma once

#include "command.h"

#include <memory>

namespace Orvane::ECProxy::Client {

/// Function codes of the numeric keypad's keys.
enum class NumberCallbackType {
    eNothing = 0,
    eSelectNumberCB = 1,
    eEnterKeyCB = 2,
    eBackKeyCB = 3,
    ePlusKeyCB = 4,
    eMinusKeyCB = 5,
    NumberCallbackTypeCnt = 6
};

namespace Internal {
class NumberCommandPrivate;
}

/// Turns the console's numeric keypad into keyboard input: digits, Enter, Back, and Plus and Minus as the
/// arrow keys Up and Down, which step a focused spin box or list. It knows nothing of the model; the host
/// makes a key event for its focused widget of `ECManager::signalStandardKeyPressed`. Keys are served while
/// a dialog is open, because typing into dialogs is what they are for.
class ORVANEECPROXYCLIENT_EXPORT NumberCommand : public Command {
    Q_OBJECT

public:
    /// Made by the command manager, on the GUI thread.
    explicit NumberCommand(QObject* parent = nullptr);
    ~NumberCommand() override;

    QString name() const override;
    /// One item for each digit key.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    void updateSelectModeButtonConfig() override;
    /// Sets every key of the group dark.
    void updateKeyboard() override;
    bool isAllowedKeyPressed(const quint16& ecKey) override;

    /// The Qt key of a digit key; `Qt::Key_unknown`, with a log line, when its order index is no digit.
    Qt::Key getRealKeyValue(const quint32& ecKey) const;

    /// Logs which widget will get the key, then has the manager emit its signal.
    void signalStandardKeyPressed(quint32 key, QString text);

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    /// @}

private:
    const std::unique_ptr<Internal::NumberCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client
