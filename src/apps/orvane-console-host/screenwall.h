#pragma once

#include <QList>
#include <QWidget>

class QGridLayout;

namespace Orvane::ConsoleHost {

class ScreenPanel;
struct DevicePicture;

/// All screens of a device.
class ScreenWall : public QWidget {
    Q_OBJECT

public:
    explicit ScreenWall(QWidget* parent = nullptr);

    void showDevice(const DevicePicture& device);

private:
    void setPanelCount(int count);

    QGridLayout* m_pGrid = nullptr;
    QList<ScreenPanel*> m_panels;
};

} // namespace Orvane::ConsoleHost
