#include "screenwall.h"

#include "modelpicture.h"
#include "screenpanel.h"

#include <QGridLayout>

namespace Orvane::ConsoleHost {

namespace {
constexpr int Columns = 2;
}

ScreenWall::ScreenWall(QWidget* parent)
    : QWidget(parent)
    , m_pGrid(new QGridLayout(this))
{
    m_pGrid->setContentsMargins({});
}

void ScreenWall::showDevice(const DevicePicture& device)
{
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
