#pragma once

#include "consolestate.h"
#include "ecconstants.h"
#include "stormkeyboard.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"

#include <QString>

#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

namespace Storm {

/// What the documents of the keys say that the console shows of the model, written from them and without a
/// look at the library: the second opinion that the library's lights and labels are held against.
///
/// Most of it follows from the model alone. The rest depends on what has happened (pages, which key a layer
/// has, how the input keys were lit last); the operator says that, in the documents' words, before it
/// compares. Used on the thread of the model's signals while nothing is under way. A copy can be tried and
/// thrown away.
class Statement {
public:
    Statement(const Keyboard& keyboard, BizModel::DeviceList& devices);

    /// @name What has happened since the last comparison
    /// @{
    void pageKeyReleased(const char* group, bool up);
    void pageShown(const char* group, int page) { m_pages[group] = page; }
    /// The documents leave open which page the group turns to.
    void pageMayTurn(const char* group) { m_pages[group] = std::nullopt; }
    void capacityPressed() { m_nCapacity = (m_nCapacity + 1) % 3; }
    /// The screen key or layer key at that place was pressed: what is new belongs to it.
    void layerKeyPressed(int place) { m_layerMadeAt = place; }
    /// A take, cut, match, T-Bar move or preset load, done or refused.
    void transition();
    /// Something that makes the input keys look at the selection anew.
    void inputsRefreshed() { m_bInputsRefreshed = true; }
    void signalAtDvi(bool isThere) { m_bDviSignal = isThere; }
    void tbarLocked(bool locked) { m_bTBarLocked = locked; }
    void keypadLocked(bool locked) { m_bKeypadLocked = locked; }
    /// The key is held down, and no guard was in its way; 0 for none.
    void held(quint16 ecKey) { m_nHeld = ecKey; }
    /// @}

    /// Takes in the model as it is now. Once before the comparisons of a step.
    void observe();
    /// How the console differs; empty when it shows what it must, which then is what the next step starts
    /// from.
    QString difference(const ConsolePanel::ConsoleState& console);

    int page(const char* group) const { return m_pages.at(group).value_or(0); }
    int pageSize(const char* group) const { return m_pageSizes.at(group); }
    int pageCount(const char* group) const;
    bool isKeypadLocked() const { return m_bKeypadLocked; }
    bool isInTransition() const { return m_bTransition; }
    bool isTBarLocked() const { return m_bTBarLocked; }
    /// What the select key at that place of the page shown stands for; nothing on a key that is free.
    std::shared_ptr<BizModel::Screen> screenAt(int place) const;
    std::shared_ptr<BizModel::Layer> layerAt(int place) const;
    std::shared_ptr<BizModel::Input> inputAt(int place) const;
    bool isScreenKeyFree(int index) const;

private:
    using Color = ECProxy::Client::ECLEDColor;
    using ScreenId = std::pair<int, quint32>; ///< type and id
    template <typename Id> using Keys = std::map<Id, int>; ///< key of each thing, as page × size + place
    struct Face {
        Color color = Color::Off;
        QString label;
        std::optional<Color> alsoRight;
    };
    using Faces = std::map<int, Face>; ///< by place on the page

    void observeScreens();
    void observeLayers();
    void turnToSelection();
    void observeInputs();
    void observeSources();
    std::vector<Keys<quint32>>& layerKeys();

    QString pageDifference(const char* group, const Faces& faces) const;
    /// Whether the page that is shown can be the one; empty when so.
    QString turnedWrongly(const char* group) const;
    Faces screenFaces(int page) const;
    Faces layerFaces(int page, const Keys<quint32>& keys) const;
    Faces inputFaces(int page) const;
    Faces presetFaces(int page) const;
    QString screenKeysDifference();
    QString layerKeysDifference();
    QString layerNames() const;
    QString presetKeysDifference();
    QString functionKeysDifference();
    QString numberKeysDifference();

    bool shows(quint16 ecKey, Color color) const;
    QString lightText(quint16 ecKey) const;
    QString lightDifference(const char* group, int code, Color color) const;
    QString labelDifference(const char* group, int code, const QString& text) const;
    bool anySelected(bool (BizModel::Screen::*is)() const, bool inGroup, int types) const;
    int shownPage(const char* group) const;

    const Keyboard* m_pKeyboard;
    BizModel::DeviceList* m_pDevices;
    std::map<std::string, int> m_pageSizes;
    const ConsolePanel::ConsoleState* m_pConsole = nullptr;

    // As it was observed.
    std::shared_ptr<BizModel::Device> m_pDevice;
    std::shared_ptr<BizModel::Screen> m_pScreen;
    QString m_ip;
    std::optional<ScreenId> m_screenId;
    std::set<quint32> m_selectedPreview;
    std::vector<std::pair<int, quint32>> m_selectedLayers; ///< scene and id
    std::map<std::pair<int, quint32>, quint32> m_sources; ///< of the active screen's layers
    std::vector<std::tuple<quint32, bool, bool>> m_signals; ///< input, signal, overload
    std::vector<std::shared_ptr<BizModel::Input>> m_inputs; ///< by id
    std::set<quint32> m_feeding; ///< inputs of the selected preview layers

    // What depends on the past.
    std::map<std::string, std::optional<int>> m_pages;
    std::map<QString, Keys<ScreenId>> m_screenKeys;
    /// By device and screen. More than one while the console has not shown which of them holds.
    std::map<std::pair<QString, ScreenId>, std::vector<Keys<quint32>>> m_layerKeys;
    std::set<std::pair<QString, ScreenId>> m_mayBeGivenAnew; ///< since they were observed last
    std::map<quint32, bool> m_litAsFeeding;
    std::optional<int> m_layerMadeAt;
    bool m_bTransition = false;
    bool m_bInputsRefreshed = true;
    int m_nCapacity = 0;
    bool m_bDviSignal = false;
    std::optional<quint8> m_source; ///< of the secondary screen, as the console was told last
    bool m_bTBarLocked = false;
    bool m_bKeypadLocked = false;
    quint16 m_nHeld = 0;
};

} // namespace Storm
