#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"
#include "orvaneplatform/protomodel/file.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::ModelControl {

/// Changes a device's presets and applies them. Operations run on the caller's thread, which may be any, and
/// have taken effect when they return. Those with an @p error put the reason there when they return false.
/// What is not overridden is refused, but for the two that have an answer of their own.
class ORVANEPLATFORM_EXPORT Preset {
public:
    /// Those that a preset changes.
    using Screens = QList<std::weak_ptr<BizModel::Screen>>;

    /// Controller of the presets of @p device; empty when the device is gone or no factory is installed.
    static std::shared_ptr<Preset> create(const std::weak_ptr<BizModel::Device>& device);

    Preset() = default;
    virtual ~Preset();

    /// Overwrites the preset with the present scene.
    virtual bool coverPreset(
        const std::weak_ptr<BizModel::Preset>& preset, BizModel::Enum::File::FileType type, QString& error);
    /// Whether the preset can be loaded now; whenever it is there, unless overridden.
    virtual bool checkPresetData(const std::weak_ptr<BizModel::Preset>& preset, QString& error) const;
    /// Puts the state that the keypad will have once the preset is loaded to @p screens into @p keypadInfo.
    /// Unless overridden the state is empty, which is right for a model without keypad files.
    virtual bool createKeypadInfo(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens,
        ProtoModel::File::s_KeypadInfo& keypadInfo) const;
    /// Applies the preset to the model; the device is told by way of `TaskSampling::SamplingThread`. Called
    /// on a pool thread, for it may take its time.
    virtual bool updatePresetModelData(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error) = 0;

private:
    Q_DISABLE_COPY_MOVE(Preset)
};

} // namespace Orvane::ModelControl
