#pragma once

#include "surfacecomparison.h"

#include <QTimer>
#include <QWidget>

#include <optional>

class QCheckBox;
class QTableWidget;

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ConsoleHost {

class CommandTable;

/// Shows for each key what it is to show and what the console was told last, and which differ, as it is while
/// the window is shown. It notes what is sent from its making on, so it is made before the keys are painted.
/// It never takes the focus, which is where the keypad types, and no dialog stops it.
class SurfaceWindow : public QWidget {
    Q_OBJECT

public:
    explicit SurfaceWindow(const EC::s_ECKeyboardConfig& keyboard);

    /// @param shown as for `compareSurface()`
    std::vector<SurfaceRow> rows(const QJsonObject& shown = {}) const;
    /// From now on the window has what the console shows beside it, read anew from what the simulator writes
    /// to this file; an empty name ends that.
    /// @return empty, or why the file cannot be read; then all stays as it was
    QString compareWith(const QString& file);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void update();
    void showRow(int place, const SurfaceRow& row);

    const ConsolePanel::ConsoleLayout m_layout;
    const ECProxy::Client::ECSurfaceShadow m_shadow;
    QTableWidget* const m_pTable;
    QCheckBox* const m_pDifferencesOnly;
    QTimer m_timer;
    QString m_shownFile;
    QJsonObject m_shown; ///< as last read
};

/// Adds the commands of the surface; they are refused without a window.
void addSurfaceCommands(CommandTable& table, const std::unique_ptr<SurfaceWindow>& window);

} // namespace Orvane::ConsoleHost
