#include "presetpages_p.h"

#include "log_p.h"
#include "presetcallbacktype.h"

#include "bizmodel/devicelist.h"
#include "ec/eckeyboardconfig.h"

#include <QThread>

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// This thread is telling the application of a page that a key has turned to. A thread's own, because the
/// keys of both consoles may turn at once: whether the model is connected or not would be a state that they
/// share, and a turn of the one, coming back as the application's, would undo the other's.
thread_local bool s_bAnnouncing = false;

} // namespace

PresetPages::PresetPages(
    Command& presetKeys, Painter& painter, OrvanePresetCommand& pageExtension, PresetExtensions& extensions)
    : m_presetKeys(presetKeys)
    , m_painter(painter)
    , m_pageExtension(pageExtension)
    , m_extensions(extensions)
{
}

void PresetPages::connectModel()
{
    if (const BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        connect(
            devices, &BizModel::DeviceList::signalPageChanged, this, &PresetPages::slotPageChanged,
            Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
}

bool PresetPages::turn(Turn step, const quint32& ecKey)
{
    const bool isTurned = (m_presetKeys.*step)(ecKey);
    updatePageIndex();
    updateAllKeyboard();
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance()) {
        s_bAnnouncing = true;
        Q_EMIT devices->signalPageChanged(m_presetKeys.currentPageIndex());
        s_bAnnouncing = false;
    }
    return isTurned;
}

void PresetPages::slotPageChanged(int page)
{
    if (s_bAnnouncing)
        return; // our own announcement is not to come back
    if (QThread::currentThread() == thread())
        slotPageModifySelectedItems(page);
    else
        QMetaObject::invokeMethod(
            this, [this, page] { slotPageModifySelectedItems(page); }, Qt::QueuedConnection);
}

void PresetPages::slotPageModifySelectedItems(int page)
{
    m_presetKeys.updateCurrentPageIndex(clamped(page));
    updatePageIndex();
    udpatePageOLEDText();
    updateAllKeyboard();
}

void PresetPages::clamp()
{
    const int page = m_presetKeys.currentPageIndex();
    if (clamped(page) != page)
        m_presetKeys.updateCurrentPageIndex(clamped(page));
}

int PresetPages::clamped(int page) const
{
    return std::clamp(page, 0, std::max(0, m_presetKeys.maxPage() - 1));
}

void PresetPages::updatePageIndex()
{
    m_pageExtension.updatePageIndex();
    m_extensions.tellPage();
}

void PresetPages::udpatePageOLEDText()
{
    m_painter.paint("preset page label", [this] { showPageLabel(); });
}

void PresetPages::showPageLabel()
{
    const auto config = m_presetKeys.ecCommandConfig();
    const auto button =
        config ? config->findECButtonConfigByOrvaneKey(quint16(PresetCallbackType::ePageUp)) : nullptr;
    if (!button) {
        ecWarning(lcPaint, "command has invalid page button");
    } else if (!button->pECOledCfg) {
        ecWarning(lcPaint, " command has invalid page oled");
    } else {
        m_pageExtension.updatePageIndex(); // the page that is shown when this job runs
        m_presetKeys.updatePageOled(button->pECOledCfg->ECKey, quint32(m_pageExtension.page()));
    }
}

void PresetPages::updateAllKeyboard()
{
    // The page extension's keys are the preset command's.
    m_presetKeys.updateCommandKeypad(Enum::UpdateConsoleType::All);
}

} // namespace Orvane::ECProxy::Client::Internal
