#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QObject>

/// Enumerations of the model.
///
/// They are unscoped with a fixed type, so that bit values combine to the `int` masks which the queries
/// take (`RegularScreen | AUXScreen`). Each lives in a namespace of its own, so that equal enumerators
/// (`Input`, `Warning`) do not meet; write them with their type: `SceneType::PVW`. Those that have words in
/// files, commands or events are known to Qt by name.

namespace Orvane::BizModel {

namespace Enum {

namespace Screen {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// Kinds of screens; bit values.
enum ScreenType : int {
    Invalid = 0,
    RegularScreen = 2,
    AUXScreen = 4,
    MVRScreen = 8,
    EchoScreen = 16,
    AllScreenType = 30
};
/// The screens that the console works on.
constexpr int RegularAndAUXScreens = RegularScreen | AUXScreen;

/// What a screen is doing.
enum State : int { Normal = 0, Taking = 1, Resource_out = 2, Tbar_taking = 3, Cut = 4, MatchingPGM = 5 };
Q_ENUM_NS(State)
} // namespace Screen

namespace Scene {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// The scenes of a screen; bit values. Also what a screen's operations aim at.
enum SceneType : int { PGM = 2, PVW = 4 };
Q_ENUM_NS(SceneType)
/// Program and preview.
constexpr int BothScenes = PGM | PVW;
} // namespace Scene

namespace Layer {
/// Kinds of layers; bit values.
enum LayerType : int { Regular = 2, AUX = 4, Image = 8, NotImageType = 118, AllLayerType = 126 };
/// The layers that the console shows on its keys.
constexpr int RegularAndAUXLayers = Regular | AUX;
} // namespace Layer

namespace Source {
/// What a layer shows.
enum SourceType : int { Input = 2 };
} // namespace Source

namespace Interface {
/// Which way a signal goes.
enum InterfaceType : int { Input = 2, Output = 4 };
} // namespace Interface

namespace Capacity {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// Bandwidth that a layer, an input or a connector takes: single link, dual link, 4K.
enum CapacityMode : int { _SL = 0, _DL = 1, _4K = 2 }; // NOLINT(bugprone-reserved-identifier)
Q_ENUM_NS(CapacityMode)
} // namespace Capacity

namespace Effect {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// How a transition mixes.
enum EffectType : int { cut = 0, fade = 1 };
Q_ENUM_NS(EffectType)
} // namespace Effect

namespace Selection {
/// Whether a selection replaces the present one or extends it.
enum SelectedType : int { Cover = 0, Append = 1 };
} // namespace Selection

namespace File {
/// The device's files that the console has to do with.
enum FileType : int { PresetPVW = 6, PresetPGM = 8, keypad = 12 };
} // namespace File

namespace Preset {
/// What the next press of a preset key does.
enum PresetOptMode : int { Noting = 0, Select = 1, Clear = 2, ClearAll = 3, Save = 4 };
} // namespace Preset

namespace Device {
/// Scene that presets are loaded to.
enum LoadToPGMStatus : int { LoadToPVW = 0, LoadToPGM = 1 };
} // namespace Device

namespace StatusBar {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// Kinds of messages in the status bar.
enum StatusBarMsgType : int { Information = 0, Warning = 1, Error = 2 };
Q_ENUM_NS(StatusBarMsgType)
} // namespace StatusBar

namespace MessageBox {
Q_NAMESPACE_EXPORT(ORVANEPLATFORM_EXPORT)
/// Kinds of message boxes. A `Question` is answered by `DeviceList::signalFramelessMessageBoxClosed`.
enum FramelessMessageBoxMsgType : int { Question = 0, Warning = 1, Information = 2 };
Q_ENUM_NS(FramelessMessageBoxMsgType)
} // namespace MessageBox

} // namespace Enum

/// The enumerations by their short names.
/// @{
using SceneType = Enum::Scene::SceneType;
using LayerType = Enum::Layer::LayerType;
using SourceType = Enum::Source::SourceType;
using InterfaceType = Enum::Interface::InterfaceType;
using CapacityMode = Enum::Capacity::CapacityMode;
using EffectType = Enum::Effect::EffectType;
using SelectedType = Enum::Selection::SelectedType;
using StatusBarMsgType = Enum::StatusBar::StatusBarMsgType;
using FramelessMessageBoxMsgType = Enum::MessageBox::FramelessMessageBoxMsgType;
/// @}

/// Kind of a layer notification; opaque, handed on as it came.
using NotifyUpdateLayer = int;

} // namespace Orvane::BizModel
