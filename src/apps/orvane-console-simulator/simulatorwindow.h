#pragma once

#include "journalmodel.h"
#include "simulator.h"

#include <QMainWindow>
#include <QPointer>

namespace Orvane::ConsolePanel {
class ConsoleWidget;
class FaultPanel;
class JournalView;
} // namespace Orvane::ConsolePanel

/// The console in a window, with the journal of its messages and the faults that can be put on the wire.
class SimulatorWindow : public QMainWindow, private SimulatorWatcher {
    Q_OBJECT

public:
    /// `simulator` outlives the window.
    explicit SimulatorWindow(Simulator& simulator);
    ~SimulatorWindow() override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void noteDown(
        std::chrono::microseconds time, const QByteArray& datagram,
        const Orvane::ConsolePanel::Reception& reception) override;
    void noteUp(std::chrono::microseconds time, const QByteArray& datagram, bool isLost) override;
    void consoleRestarted() override;
    bool takePicture(const QString& file) override;
    void refresh();

    Simulator& m_simulator;
    Orvane::ConsolePanel::JournalModel m_journal;
    QPointer<Orvane::ConsolePanel::ConsoleWidget> m_pConsole;
    Orvane::ConsolePanel::JournalView* m_pJournalView = nullptr;
    Orvane::ConsolePanel::FaultPanel* m_pFaults = nullptr;
};
