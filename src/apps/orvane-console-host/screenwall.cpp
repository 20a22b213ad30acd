#include "screenwall.h"

#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelpicture.h"
#include "screenpanel.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace Orvane::ConsoleHost {

using MemoryModel::MemoryDeviceList;

namespace {
constexpr std::chrono::milliseconds RefreshInterval(40);
constexpr int Columns = 2;
} // namespace

ScreenWall::ScreenWall(MemoryModel::MemoryModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_pTitle(new QLabel)
    , m_pGrid(new QGridLayout)
{
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->addWidget(m_pTitle);
    rows->addLayout(m_pGrid, 1);
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(RefreshInterval);
    connect(&m_refreshTimer, &QTimer::timeout, this, &ScreenWall::refresh);
    connect(&model.deviceList(), &MemoryDeviceList::signalModelChanged, this, &ScreenWall::refreshSoon);
    refresh();
}

void ScreenWall::refreshSoon()
{
    if (!m_refreshTimer.isActive())
        m_refreshTimer.start();
}

void ScreenWall::refresh()
{
    const DevicePicture device = pictureActiveDevice(m_model);
    showDevice(device);
    // A transition moves on without a change of the model.
    const bool isMoving =
        std::any_of(device.screens.begin(), device.screens.end(), [](const ScreenPicture& screen) {
            return screen.state == BizModel::Screen::State::Taking
                || screen.state == BizModel::Screen::State::Tbar_taking;
        });
    if (isMoving)
        refreshSoon();
}

void ScreenWall::showDevice(const DevicePicture& device)
{
    if (device.identity.isEmpty()) {
        m_pTitle->setText(QStringLiteral("No device is active."));
    } else {
        m_pTitle->setText(QStringLiteral("%1   %2%3")
                              .arg(
                                  device.identity,
                                  device.isOnline ? QStringLiteral("online") : QStringLiteral("offline"),
                                  device.isSwapEnabled ? QStringLiteral("   swap") : QString()));
    }
    setPanelCount(device.screens.size());
    for (int i = 0; i < device.screens.size(); ++i)
        m_panels.at(i)->setPicture(device.screens.at(i));
}

void ScreenWall::setPanelCount(int count)
{
    while (m_panels.size() > count)
        delete m_panels.takeLast();
    while (m_panels.size() < count) {
        const int place = m_panels.size();
        m_panels.append(new ScreenPanel);
        m_pGrid->addWidget(m_panels.last(), place / Columns, place % Columns);
    }
}

} // namespace Orvane::ConsoleHost
