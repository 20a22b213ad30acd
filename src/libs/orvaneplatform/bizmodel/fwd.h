#pragma once

/// Names of the model's classes, for headers that only pass pointers on.

namespace Orvane::BizModel {

class Connector;
class Device;
class DeviceList;
class File;
class Input;
class Interface;
class Keypad;
class Layer;
class Output;
class Preset;
class ResourceCheck;
class Screen;
class Subcard;

struct s_DeviceConfig;
struct s_InterfaceFullId;
struct s_PresetDetail;
struct s_ScreenLayerId;

} // namespace Orvane::BizModel
