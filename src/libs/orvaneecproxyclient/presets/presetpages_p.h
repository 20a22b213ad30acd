#pragma once

#include "orvanepresetcommand.h"
#include "painter_p.h"
#include "presetextensions_p.h"

namespace Orvane::ECProxy::Client::Internal {

/// The pages of the preset keys: turned by the group's page keys and by the application, which follow each
/// other, and told to the extensions. Any thread may call any member; made on the GUI thread.
class PresetPages : public QObject {
public:
    using Turn = bool (Command::*)(const quint32&);

    PresetPages(
        Command& presetKeys, Painter& painter, OrvanePresetCommand& pageExtension,
        PresetExtensions& extensions);

    /// Begins to follow the application's pages. More than one call changes nothing.
    void connectModel();

    /// Turns the page by a page key's release, and has the application follow.
    bool turn(Turn turn, const quint32& ecKey);
    /// Brings the page into the present number of pages.
    void clamp();
    /// Hands the page to the extensions.
    void updatePageIndex();
    /// Paints the page label.
    void udpatePageOLEDText();
    void updateAllKeyboard();

private:
    /// Called on the thread that announces a page.
    void slotPageChanged(int page);
    /// The application shows another page of presets; the keys follow.
    void slotPageModifySelectedItems(int page);
    int clamped(int page) const;
    void showPageLabel();

    Command& m_presetKeys;
    Painter& m_painter;
    OrvanePresetCommand& m_pageExtension;
    PresetExtensions& m_extensions;
};

} // namespace Orvane::ECProxy::Client::Internal
