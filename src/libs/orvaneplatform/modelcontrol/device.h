#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/modelcontrol/switcheffect.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::ModelControl {

class Screen;

/// Changes a device. Operations run on the caller's thread, which may be any, and have taken effect when
/// they return; the change is announced by `BizModel::DeviceList`. What is not overridden is refused.
class ORVANEPLATFORM_EXPORT Device {
public:
    /// Controller of @p device; empty when the device is gone or no factory is installed.
    static std::shared_ptr<Device> create(const std::weak_ptr<BizModel::Device>& device);
    /// Controller of the screens of one type; empty when there is none for the type.
    static std::shared_ptr<Screen> screenModelControl(
        BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device);

    virtual ~Device();

    /// True when a take or a cut may run now. Unless overridden, when a regular or AUX screen is selected and
    /// every selected one is `Normal` or `Resource_out`.
    virtual bool takeCutEnabled() const;
    /// Makes the screen the one that layer keys work on.
    virtual void setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen) = 0;
    /// Screens of the types in @p screenTypeMask that a take with @p effect would act on; the selected ones
    /// only when @p onlySelected. Unless overridden, all of these. The T-Bar acts only when there are any.
    virtual QList<std::weak_ptr<BizModel::Screen>> getTakeScreens(
        int screenTypeMask, const s_SwitchEffectBody& effect, bool onlySelected) const;
    /// Stores the present scene as a new file. False with the reason in @p error on failure.
    virtual bool createPresetFile(BizModel::Enum::File::FileType type, quint16 fileId, QString& error);
    /// Removes the files and returns when they are gone. False with the reason in @p error when one could
    /// not be removed.
    virtual bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error);

protected:
    /// @p device is the one that the members without an override of their own look at.
    explicit Device(std::weak_ptr<BizModel::Device> device);

    /// The device; empty when it is gone.
    std::shared_ptr<BizModel::Device> device() const { return m_pDevice.lock(); }

private:
    Q_DISABLE_COPY_MOVE(Device)

    const std::weak_ptr<BizModel::Device> m_pDevice;
};

} // namespace Orvane::ModelControl
