#pragma once

#include <QList>
#include <QTimer>
#include <QWidget>

class QGridLayout;
class QLabel;

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

class ScreenPanel;
struct DevicePicture;

/// All screens of the active device, kept as the model is. However often the model changes, it is drawn 25
/// times a second at most.
class ScreenWall : public QWidget {
    Q_OBJECT

public:
    explicit ScreenWall(MemoryModel::MemoryModel& model, QWidget* parent = nullptr);

private:
    void refreshSoon();
    void refresh();
    void showDevice(const DevicePicture& device);
    void setPanelCount(int count);

    MemoryModel::MemoryModel& m_model;
    QTimer m_refreshTimer;
    QLabel* m_pTitle = nullptr;
    QGridLayout* m_pGrid = nullptr;
    QList<ScreenPanel*> m_panels;
};

} // namespace Orvane::ConsoleHost
