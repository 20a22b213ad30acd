#include "statement.h"

#include "consolerig.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/preset.h"

#include <algorithm>
#include <utility>

namespace Storm {

using BizModel::SceneType;
using ConsolePanel::ConsoleState;
using PresetMode = BizModel::Enum::Preset::PresetOptMode;

namespace {

constexpr int RegularAndAUX = BizModel::Enum::Screen::RegularAndAUXScreens;
constexpr int RegularOnly = BizModel::Enum::Screen::RegularScreen;
constexpr int LabelBytes = 32;

// The codes of the keys, as the documents number them.
enum : int { Select = 1, PageUp = 2, PageDown = 3 };
enum ScreenCode { Freeze = 4, Match, FTB, Cut, Take, MixType, TimeUp, Swap, PGMEdit = 14, TimeDown };
enum LayerCode { RemoveLayers = 4, ClearLayers, ToFront, ToBack, Capacity, FullScreen };
enum PresetCode { RemovePreset = 4, ClearPresets, StorePreset, LoadTarget = 9 };
enum FunctionCode { Save = 1, LockTBar, LockKeypad, MVR, Copy, MirrorCopy, DviLight };
constexpr int DigitCodes = 5;

constexpr const char* PagedGroups[] = {ScreenGroup, LayerGroup, InputGroup, PresetGroup};

template <typename T> std::vector<std::shared_ptr<T>> locked(const QList<std::weak_ptr<T>>& weak)
{
    std::vector<std::shared_ptr<T>> all;
    for (const auto& each : weak) {
        if (auto object = each.lock())
            all.push_back(std::move(object));
    }
    return all;
}

/// Those that are still there keep their keys; the others get the lowest free one, in order.
template <typename Id> void giveKeys(std::map<Id, int>& keys, const std::vector<Id>& present, int keyCount)
{
    for (auto each = keys.begin(); each != keys.end();) {
        const bool isThere = std::find(present.begin(), present.end(), each->first) != present.end();
        each = isThere ? std::next(each) : keys.erase(each);
    }
    std::set<int> taken;
    for (const auto& [id, key] : keys)
        taken.insert(key);
    int lowest = 0;
    for (const Id& id : present) {
        if (keys.count(id) != 0)
            continue;
        while (taken.count(lowest) != 0)
            ++lowest;
        if (lowest >= keyCount)
            return;
        keys[id] = lowest;
        taken.insert(lowest);
    }
}

QString cut(const QString& text);

/// The names of presets in one slot may stand in any order.
bool isSameLabel(const QString& shown, const QString& expected)
{
    QStringList left = shown.split(QLatin1Char('/')), right = cut(expected).split(QLatin1Char('/'));
    std::sort(left.begin(), left.end());
    std::sort(right.begin(), right.end());
    return left == right;
}

QString cut(const QString& text)
{
    return QString::fromUtf8(text.toUtf8().left(LabelBytes));
}

} // namespace

Statement::Statement(const Keyboard& keyboard, BizModel::DeviceList& devices)
    : m_pKeyboard(&keyboard)
    , m_pDevices(&devices)
{
    for (const char* group : PagedGroups) {
        const auto& keys = keyboard.group(group).m_buttons;
        m_pageSizes[group] = int(std::count_if(
            keys.begin(), keys.end(), [](const auto& key) { return key->OrvaneKey == Select; }));
        m_pages[group] = 0;
    }
}

// ---- What has happened --------------------------------------------------------------------------

int Statement::pageCount(const char* group) const
{
    if (group == InputGroup)
        return 2;
    if (group != PresetGroup)
        return 8;
    const auto device = m_pDevices->activedDevice().lock();
    const int size = pageSize(group);
    return device ? (device->maxPresetCount() + size - 1) / size : 8;
}

void Statement::pageKeyReleased(const char* group, bool up)
{
    auto& page = m_pages[group];
    if (!page)
        return;
    const int former = *page;
    page = std::clamp(former + (up ? -1 : 1), 0, pageCount(group) - 1);
    if (group == InputGroup && page != former)
        inputsRefreshed();
}

void Statement::transition()
{
    m_bTransition = true;
    for (const auto& [screen, keys] : m_layerKeys)
        m_mayBeGivenAnew.insert(screen);
    pageMayTurn(LayerGroup);
    pageMayTurn(InputGroup);
}

// ---- The model ----------------------------------------------------------------------------------

void Statement::observe()
{
    m_pDevice = m_pDevices->activedDevice().lock();
    m_pScreen = m_pDevice ? m_pDevice->activedScreen().lock() : nullptr;
    const QString ip = m_pDevice ? m_pDevice->ipMacSn() : QString();
    if (ip != m_ip) { // another device begins with its first page
        for (const char* group : PagedGroups)
            pageShown(group, 0);
        pageMayTurn(PresetGroup);
        inputsRefreshed();
    }
    const bool isOtherDevice = std::exchange(m_ip, ip) != ip;
    const auto screenId = m_pScreen
        ? std::make_optional(ScreenId(m_pScreen->screenType(), m_pScreen->screenId()))
        : std::nullopt;
    const bool isOtherScreen = std::exchange(m_screenId, screenId) != screenId || isOtherDevice;
    if (isOtherScreen && !isOtherDevice) {
        pageMayTurn(LayerGroup);
        pageMayTurn(InputGroup);
    }
    if (isOtherScreen)
        inputsRefreshed();
    observeScreens();
    observeInputs();
    observeSources();
    observeLayers();
    if (!isOtherScreen && !m_bTransition)
        turnToSelection();
    else if (isOtherDevice) {
        // A device that comes with a selection may be shown on the page of that.
        pageMayTurn(LayerGroup);
        pageMayTurn(InputGroup);
    }
    m_selectedPreview.clear();
    m_selectedLayers.clear();
    if (m_pScreen) {
        for (const auto& layer : locked(m_pScreen->selectedLayers())) {
            m_selectedLayers.emplace_back(layer->sceneType(), layer->layerId());
            if (layer->sceneType() == SceneType::PVW)
                m_selectedPreview.insert(layer->layerId());
        }
    }
}

void Statement::observeScreens()
{
    auto& keys = m_screenKeys[m_ip];
    if (!m_pDevice) {
        keys.clear();
        return;
    }
    const int keyCount = pageSize(ScreenGroup) * pageCount(ScreenGroup);
    std::vector<ScreenId> present;
    Keys<ScreenId> settled;
    std::set<int> taken;
    const auto screens = locked(m_pDevice->screens(RegularAndAUX));
    const auto settle = [&](const ScreenId& id, int key) {
        if (key >= 0 && key < keyCount && settled.count(id) == 0 && taken.insert(key).second)
            settled[id] = key;
    };
    for (const auto& screen : screens) {
        present.emplace_back(screen->screenType(), screen->screenId());
        settle(present.back(), screen->uiScreenIndex());
    }
    for (const ScreenId& id : present) {
        if (const auto former = keys.find(id); former != keys.end())
            settle(id, former->second);
    }
    giveKeys(settled, present, keyCount);
    keys = settled;
}

std::vector<Statement::Keys<quint32>>& Statement::layerKeys()
{
    return m_layerKeys[{m_ip, *m_screenId}];
}

void Statement::observeLayers()
{
    const std::optional<int> madeAt = std::exchange(m_layerMadeAt, std::nullopt);
    if (!m_pScreen)
        return;
    std::vector<quint32> present;
    for (const auto& layer : locked(m_pScreen->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers)))
        present.push_back(layer->layerId());
    std::sort(present.begin(), present.end());
    auto& candidates = layerKeys();
    if (candidates.empty())
        candidates.emplace_back();
    const int keyCount = pageSize(LayerGroup) * pageCount(LayerGroup);
    for (auto& keys : candidates) {
        for (const quint32 id : present) {
            if (madeAt && keys.count(id) == 0)
                keys[id] = *madeAt;
        }
        giveKeys(keys, present, keyCount);
    }
    if (m_mayBeGivenAnew.erase({m_ip, *m_screenId}) != 0) {
        Keys<quint32> anew;
        giveKeys(anew, present, keyCount);
        candidates.push_back(anew);
    }
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
}

/// The pages follow a selection that is new.
void Statement::turnToSelection()
{
    if (!m_pScreen)
        return;
    const auto selected = locked(m_pScreen->selectedLayers());
    std::vector<std::pair<int, quint32>> now;
    std::vector<quint32> newInPreview;
    for (const auto& layer : selected) {
        now.emplace_back(layer->sceneType(), layer->layerId());
        if (layer->sceneType() == SceneType::PVW && m_selectedPreview.count(layer->layerId()) == 0)
            newInPreview.push_back(layer->layerId());
    }
    if (now == m_selectedLayers)
        return;
    if (now.size() != 1) {
        if (!newInPreview.empty())
            pageMayTurn(LayerGroup); // to one of several
        return;
    }
    inputsRefreshed();
    auto& candidates = layerKeys();
    if (newInPreview.size() == 1 && candidates.size() == 1 && candidates[0].count(newInPreview[0]) != 0)
        pageShown(LayerGroup, candidates[0][newInPreview[0]] / pageSize(LayerGroup));
    else if (!newInPreview.empty())
        pageMayTurn(LayerGroup);
    for (std::size_t i = 0; i < m_inputs.size(); ++i) {
        const int page = int(i) / pageSize(InputGroup);
        if (m_inputs[i]->interfaceId() == selected[0]->sourceId() && page < pageCount(InputGroup))
            pageShown(InputGroup, page);
    }
}

void Statement::observeInputs()
{
    m_inputs = m_pDevice ? locked(m_pDevice->validInputs()) : std::vector<std::shared_ptr<BizModel::Input>>();
    std::sort(m_inputs.begin(), m_inputs.end(), [](const auto& left, const auto& right) {
        return left->interfaceId() < right->interfaceId();
    });
    m_feeding.clear();
    if (!m_pScreen)
        return;
    for (const auto& layer : locked(m_pScreen->selectedLayers(SceneType::PVW))) {
        if (layer->sourceType() == BizModel::SourceType::Input)
            m_feeding.insert(layer->sourceId());
    }
}

/// The input keys are lit anew when an input or a layer's source changes.
void Statement::observeSources()
{
    std::vector<std::tuple<quint32, bool, bool>> signalStates;
    for (const auto& input : m_inputs)
        signalStates.emplace_back(input->interfaceId(), input->isActive(), input->isOverLoad());
    std::map<std::pair<int, quint32>, quint32> sources;
    if (m_pScreen) {
        for (const auto scene : {SceneType::PVW, SceneType::PGM}) {
            for (const auto& layer : locked(m_pScreen->layers(scene, BizModel::LayerType::AllLayerType)))
                sources[{scene, layer->layerId()}] = layer->sourceId();
        }
    }
    const bool isOther = std::any_of(sources.begin(), sources.end(), [this](const auto& each) {
        const auto former = m_sources.find(each.first);
        return former != m_sources.end() && former->second != each.second;
    });
    if (std::exchange(m_signals, signalStates) != signalStates || (isOther && !m_bTransition))
        inputsRefreshed();
    m_sources = sources;
}

bool Statement::anySelected(bool (BizModel::Screen::*is)() const, bool inGroup, int types) const
{
    if (!m_pDevice)
        return false;
    std::vector<std::shared_ptr<BizModel::Device>> devices{m_pDevice};
    if (inGroup) {
        for (const auto& member : locked(m_pDevices->groupDevices(m_pDevice, true, false)))
            devices.push_back(member);
    }
    return std::any_of(devices.begin(), devices.end(), [&](const auto& device) {
        const auto selected = locked(device->selectedScreen(types));
        return std::any_of(
            selected.begin(), selected.end(), [&](const auto& screen) { return (screen.get()->*is)(); });
    });
}

std::shared_ptr<BizModel::Screen> Statement::screenAt(int place) const
{
    const int key = page(ScreenGroup) * pageSize(ScreenGroup) + place;
    const auto keys = m_screenKeys.find(m_ip);
    if (!m_pDevice || keys == m_screenKeys.end())
        return nullptr;
    for (const auto& screen : locked(m_pDevice->screens(RegularAndAUX))) {
        const auto found = keys->second.find({screen->screenType(), screen->screenId()});
        if (found != keys->second.end() && found->second == key)
            return screen;
    }
    return nullptr;
}

bool Statement::isScreenKeyFree(int index) const
{
    const auto keys = m_screenKeys.find(m_ip);
    if (keys == m_screenKeys.end())
        return true;
    return std::none_of(
        keys->second.begin(), keys->second.end(), [&](const auto& each) { return each.second == index; });
}

std::shared_ptr<BizModel::Layer> Statement::layerAt(int place) const
{
    const auto candidates = m_screenId ? m_layerKeys.find({m_ip, *m_screenId}) : m_layerKeys.end();
    if (candidates == m_layerKeys.end() || candidates->second.empty() || !m_pScreen)
        return nullptr;
    const int key = page(LayerGroup) * pageSize(LayerGroup) + place;
    for (const auto& layer : locked(m_pScreen->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers))) {
        const auto found = candidates->second[0].find(layer->layerId());
        if (found != candidates->second[0].end() && found->second == key)
            return layer;
    }
    return nullptr;
}

std::shared_ptr<BizModel::Input> Statement::inputAt(int place) const
{
    const auto index = std::size_t(page(InputGroup) * pageSize(InputGroup) + place);
    return index < m_inputs.size() ? m_inputs[index] : nullptr;
}

// ---- What the console must show -----------------------------------------------------------------

Statement::Faces Statement::screenFaces(int page) const
{
    Faces faces;
    if (!m_pDevice)
        return faces;
    const auto& keys = m_screenKeys.at(m_ip);
    for (const auto& screen : locked(m_pDevice->screens(RegularAndAUX))) {
        const auto key = keys.find({screen->screenType(), screen->screenId()});
        if (key != keys.end() && key->second / pageSize(ScreenGroup) == page)
            faces[key->second % pageSize(ScreenGroup)] = {
                screen->selected() ? Color::Green : Color::Yellow, screen->name(), {}};
    }
    return faces;
}

Statement::Faces Statement::layerFaces(int page, const Keys<quint32>& keys) const
{
    Faces faces;
    if (!m_pScreen)
        return faces;
    for (const auto& layer : locked(m_pScreen->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers))) {
        const auto key = keys.find(layer->layerId());
        const bool isSelected = m_selectedPreview.count(layer->layerId()) != 0;
        if (key != keys.end() && key->second / pageSize(LayerGroup) == page)
            faces[key->second % pageSize(LayerGroup)] = {
                isSelected ? Color::Green : Color::Yellow, layer->name(), {}};
    }
    return faces;
}

Statement::Faces Statement::inputFaces(int page) const
{
    const auto color = [this](const BizModel::Input& input, bool isFeeding) {
        if (!m_pScreen)
            return Color::Off;
        if (isFeeding)
            return input.isActive() && !input.isOverLoad() ? Color::Green : Color::Red;
        if (!input.isActive())
            return Color::Off;
        return input.isOverLoad() ? Color::Orange : Color::Yellow;
    };
    Faces faces;
    const int size = pageSize(InputGroup);
    for (int place = 0; place < size && std::size_t(page * size + place) < m_inputs.size(); ++place) {
        const auto& input = *m_inputs[std::size_t(page * size + place)];
        Face face{color(input, m_feeding.count(input.interfaceId()) != 0), input.name(), {}};
        // A selection that has become empty, or one of several layers, is told with the next refresh.
        const auto lit = m_litAsFeeding.find(input.interfaceId());
        if (!m_bInputsRefreshed && lit != m_litAsFeeding.end())
            face.alsoRight = color(input, lit->second);
        faces[place] = face;
    }
    return faces;
}

Statement::Faces Statement::presetFaces(int page) const
{
    Faces faces;
    if (!m_pDevice)
        return faces;
    const auto actived = m_pDevice->activedPreset().lock();
    const int size = pageSize(PresetGroup);
    for (const auto& preset : locked(m_pDevices->groupDevicePresets(m_pDevice))) {
        const int slot = preset->fileId() - 1;
        if (slot / size != page)
            continue;
        Face& face = faces[slot % size];
        face.label += (face.color == Color::Off ? QString() : QStringLiteral("/")) + preset->name();
        if (face.color != Color::Green)
            face.color = preset == actived ? Color::Green : Color::Yellow;
    }
    return faces;
}

// ---- The comparison -----------------------------------------------------------------------------

bool Statement::shows(quint16 ecKey, Color color) const
{
    const auto found = m_pConsole->keys.find(ecKey);
    if (found == m_pConsole->keys.end() || !found->second.isLit)
        return color == Color::Off;
    return found->second.colour == TestSupport::colourOf(color);
}

QString Statement::lightText(quint16 ecKey) const
{
    const auto found = m_pConsole->keys.find(ecKey);
    return found == m_pConsole->keys.end() ? QStringLiteral("unlit")
                                           : ConsolePanel::colourText(found->second.colour);
}

QString Statement::lightDifference(const char* group, int code, Color color) const
{
    for (const auto& key : m_pKeyboard->group(group).m_buttons) {
        if (key->OrvaneKey != code)
            continue;
        const Color expected = m_nHeld == key->ECKey ? Color::Green : color;
        if (!shows(key->ECKey, expected))
            return QStringLiteral("%1: key %2 (code %3) is not lit with color %4")
                .arg(QLatin1String(group))
                .arg(key->ECKey)
                .arg(code)
                .arg(int(expected));
    }
    return {};
}

QString Statement::labelDifference(const char* group, int code, const QString& text) const
{
    const auto& key = m_pKeyboard->key(group, code);
    const auto found = m_pConsole->labels.find(key.pECOledCfg->ECKey);
    const QString shown =
        found == m_pConsole->labels.end() ? QString() : QString::fromUtf8(found->second.text);
    return shown == cut(text) ? QString()
                              : QStringLiteral("%1: the label of code %2 is \"%3\", not \"%4\"")
                                    .arg(QLatin1String(group))
                                    .arg(code)
                                    .arg(shown, text);
}

int Statement::shownPage(const char* group) const
{
    const auto label = m_pConsole->labels.find(m_pKeyboard->key(group, PageUp).pECOledCfg->ECKey);
    const QString text =
        label == m_pConsole->labels.end() ? QString() : QString::fromUtf8(label->second.text);
    bool isNumber = false;
    const int page = text.midRef(int(qstrlen("Page "))).toInt(&isNumber) - 1;
    return text.startsWith(QLatin1String("Page ")) && isNumber ? page : -1;
}

QString Statement::turnedWrongly(const char* group) const
{
    const int shown = shownPage(group);
    const auto& page = m_pages.at(group);
    if (page ? shown == *page : shown >= 0 && shown < pageCount(group))
        return {};
    return QStringLiteral("%1: page %2 is shown, not %3")
        .arg(QLatin1String(group))
        .arg(shown + 1)
        .arg(page ? QString::number(*page + 1) : QStringLiteral("one that there is"));
}

QString Statement::pageDifference(const char* group, const Faces& faces) const
{
    for (const auto& key : m_pKeyboard->group(group).m_buttons) {
        if (key->OrvaneKey != Select)
            continue;
        const auto found = faces.find(key->OrderIndex);
        const Face face = found == faces.end() ? Face() : found->second;
        const auto label = m_pConsole->labels.find(key->pECOledCfg->ECKey);
        const QString text =
            label == m_pConsole->labels.end() ? QString() : QString::fromUtf8(label->second.text);
        const bool isLitRight =
            shows(key->ECKey, face.color) || (face.alsoRight && shows(key->ECKey, *face.alsoRight));
        if (!isLitRight || !isSameLabel(text, face.label))
            return QStringLiteral("%1: select key %2 shows \"%3\" %4; expected \"%5\" with color %6. ")
                .arg(QLatin1String(group))
                .arg(key->ECKey)
                .arg(text, isLitRight ? QStringLiteral("rightly lit") : lightText(key->ECKey), face.label)
                .arg(int(face.color));
    }
    return {};
}

QString Statement::screenKeysDifference()
{
    const bool isDevice = m_pDevice != nullptr;
    const auto lit = [](bool on, Color color) { return on ? color : Color::Off; };
    using BizModel::Screen;
    const std::pair<int, Color> lights[] = {
        {PageUp, Color::Off},
        {PageDown, Color::Off},
        {Freeze, lit(anySelected(&Screen::freeze, true, RegularAndAUX), Color::Red)},
        {Match, Color::Off},
        {FTB, lit(anySelected(&Screen::FTBEnable, true, RegularAndAUX), Color::Green)},
        {Cut, Color::Off},
        {Take, Color::Off},
        {MixType, lit(isDevice, Color::Green)},
        {TimeUp, Color::Off},
        {TimeDown, Color::Off},
        {Swap, lit(isDevice && m_pDevice->swapEnable(), Color::Green)},
        {PGMEdit, lit(anySelected(&Screen::PGMEditEnable, false, RegularOnly), Color::Green)}};
    QString found;
    for (const auto& [code, color] : lights) {
        if (found.isEmpty())
            found = lightDifference(ScreenGroup, code, color);
    }
    const auto& held = m_pKeyboard->group(ScreenGroup).findECButtonConfigByECKey(m_nHeld);
    const bool isTimeHeld = held && (held->OrvaneKey == TimeUp || held->OrvaneKey == TimeDown);
    const QString time = m_pScreen ? QString::number(m_pScreen->switchEffectTime(), 'f', 1) : QString();
    for (const int code : {int(TimeUp), int(TimeDown)}) {
        if (found.isEmpty() && !isTimeHeld)
            found = labelDifference(ScreenGroup, code, time);
    }
    if (found.isEmpty() && isDevice)
        found = labelDifference(ScreenGroup, MixType, QStringLiteral("Fade"));
    return found;
}

QString Statement::layerNames() const
{
    QStringList names;
    for (const auto& layer : locked(m_pScreen->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers)))
        names.append(QStringLiteral("%1 (id %2)").arg(layer->name()).arg(layer->layerId()));
    return names.join(QStringLiteral(", "));
}

QString Statement::layerKeysDifference()
{
    constexpr const char* capacities[] = {"SL", "DL", "4K"};
    QString found = labelDifference(LayerGroup, Capacity, QLatin1String(capacities[m_nCapacity]));
    if (found.isEmpty())
        found = labelDifference(LayerGroup, FullScreen, QStringLiteral("Full screen"));
    for (int code = PageUp; code <= FullScreen && found.isEmpty(); ++code)
        found = lightDifference(LayerGroup, code, Color::Off);
    if (!found.isEmpty())
        return found;
    const int page = shownPage(LayerGroup);
    if (!m_pScreen)
        return pageDifference(LayerGroup, {});
    auto& candidates = layerKeys();
    std::vector<Keys<quint32>> fitting;
    for (const auto& keys : candidates) {
        const QString difference = pageDifference(LayerGroup, layerFaces(page, keys));
        if (difference.isEmpty())
            fitting.push_back(keys);
        else
            found += difference;
    }
    if (fitting.empty())
        return found + QStringLiteral("The layers are: ") + layerNames();
    candidates = fitting;
    return {};
}

QString Statement::presetKeysDifference()
{
    const auto mode = m_pDevices->presetOperateMode();
    const auto armed = [&](int code, bool isArmed) {
        const QString found = lightDifference(PresetGroup, code, isArmed ? Color::Yellow : Color::Off);
        const auto key = m_pConsole->keys.find(m_pKeyboard->key(PresetGroup, code).ECKey);
        const bool flashes = key != m_pConsole->keys.end() && key->second.buttonState == 1;
        return found.isEmpty() && isArmed && !flashes ? QStringLiteral("an armed preset key does not flash")
                                                      : found;
    };
    const auto group = m_pDevice ? locked(m_pDevices->groupDevices(m_pDevice, true, false))
                                 : std::vector<std::shared_ptr<BizModel::Device>>();
    const bool isToProgram = !group.empty() && group.back()->loadToPGMEnable();
    const QString target = !m_pDevice || !m_pDevice->deviceConfig().loadToPGMEnabled ? QString()
        : isToProgram ? QStringLiteral("Load to PGM")
                      : QStringLiteral("Load to PVW");
    const QString found[] = {
        lightDifference(PresetGroup, PageUp, Color::Off),
        lightDifference(PresetGroup, PageDown, Color::Off),
        armed(RemovePreset, mode == PresetMode::Clear),
        armed(StorePreset, mode == PresetMode::Save),
        lightDifference(PresetGroup, ClearPresets, Color::Off),
        lightDifference(PresetGroup, LoadTarget, isToProgram ? Color::Red : Color::Off),
        labelDifference(PresetGroup, LoadTarget, target)};
    for (const QString& each : found) {
        if (!each.isEmpty())
            return each;
    }
    return {};
}

QString Statement::functionKeysDifference()
{
    const bool isInput = m_source == quint8(ECProxy::Client::dvi1);
    const Color mvr = !m_bDviSignal ? Color::Off : isInput ? Color::Green : Color::Yellow;
    const std::pair<int, Color> lights[] = {
        {Save, Color::Off},
        {LockTBar, m_bTBarLocked ? Color::Green : Color::Off},
        {MVR, mvr},
        {LockKeypad, m_bKeypadLocked ? Color::Green : Color::Off},
        {Copy, Color::Off},
        {MirrorCopy, Color::Off},
        {DviLight, Color::Off}};
    QString found;
    for (const auto& [code, color] : lights) {
        if (found.isEmpty())
            found = lightDifference(FunctionGroup, code, color);
    }
    return found;
}

QString Statement::numberKeysDifference()
{
    QString found;
    for (int code = 1; code <= DigitCodes && found.isEmpty(); ++code)
        found = lightDifference(NumberGroup, code, Color::Off);
    return found;
}

QString Statement::difference(const ConsoleState& console)
{
    m_pConsole = &console;
    if (console.source) // a console that starts anew is not told its source
        m_source = console.source;
    for (const char* group : PagedGroups) {
        const QString found = turnedWrongly(group);
        if (!found.isEmpty())
            return found;
    }
    const int inputPage = shownPage(InputGroup);
    const QString found[] = {
        pageDifference(ScreenGroup, screenFaces(shownPage(ScreenGroup))),
        pageDifference(InputGroup, inputFaces(inputPage)),
        pageDifference(PresetGroup, presetFaces(shownPage(PresetGroup))),
        screenKeysDifference(),
        presetKeysDifference(),
        functionKeysDifference(),
        numberKeysDifference(),
        layerKeysDifference()};
    for (const QString& each : found) {
        if (!each.isEmpty())
            return each;
    }
    for (const char* group : PagedGroups)
        pageShown(group, shownPage(group));
    for (const auto& input : m_inputs) {
        bool& lit = m_litAsFeeding[input->interfaceId()];
        if (m_bInputsRefreshed)
            lit = m_feeding.count(input->interfaceId()) != 0;
    }
    m_bInputsRefreshed = false;
    m_bTransition = false;
    return {};
}

} // namespace Storm
