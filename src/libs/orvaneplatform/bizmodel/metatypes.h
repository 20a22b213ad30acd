#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QMessageBox>
#include <QMetaType>

#include <memory>

/// The argument types of `DeviceList`'s signals. They travel between threads, and Qt drops a queued signal
/// whose argument type it does not know.
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Connector>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Device>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::File>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Input>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Interface>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Layer>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Preset>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Screen>)
Q_DECLARE_METATYPE(std::weak_ptr<Orvane::BizModel::Subcard>)
Q_DECLARE_METATYPE(std::shared_ptr<Orvane::BizModel::Device>)
Q_DECLARE_METATYPE(std::shared_ptr<Orvane::BizModel::Input>)
Q_DECLARE_METATYPE(std::shared_ptr<Orvane::BizModel::Layer>)
Q_DECLARE_METATYPE(std::shared_ptr<Orvane::BizModel::Preset>)
Q_DECLARE_METATYPE(std::shared_ptr<Orvane::BizModel::Screen>)
Q_DECLARE_METATYPE(Orvane::BizModel::StatusBarMsgType)
Q_DECLARE_METATYPE(Orvane::BizModel::FramelessMessageBoxMsgType)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)

namespace Orvane::BizModel {

/// Makes every argument type of `DeviceList`'s signals known to Qt, under the names the signals spell, so
/// that connections by name queue them too. The constructor of `DeviceList` calls it; a second call has no
/// effect. Any thread.
ORVANEPLATFORM_EXPORT void registerPlatformMetaTypes();

} // namespace Orvane::BizModel
