#pragma once

#include "faultywire.h"

#include <QWidget>

class QSpinBox;

namespace Orvane::ConsolePanel {

/// Lets the visitor break the wire, and the console.
class FaultPanel : public QWidget {
    Q_OBJECT

public:
    /// `wire` outlives the panel.
    explicit FaultPanel(FaultyWire& wire, QWidget* parent = nullptr);

    /// Shows what a script may have changed.
    void refresh();

Q_SIGNALS:
    void signalRestartConsole();
    void signalSendBytes(const QByteArray& datagram);

private:
    QSpinBox* createNumber(const char* name, int WireFaults::*rate, const QString& suffix, int highest);

    struct Number {
        QSpinBox* box;
        int WireFaults::*rate;
    };
    FaultyWire& m_wire;
    std::vector<Number> m_numbers;
    QSpinBox* m_pDelay = nullptr;
};

} // namespace Orvane::ConsolePanel
