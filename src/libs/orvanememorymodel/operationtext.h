#pragma once

#include "operations.h"
#include "orvaneplatform/bizmodel/fwd.h"

#include <QList>
#include <QRect>
#include <QString>

#include <memory>

/// How operations' arguments are written in the journal. Not to be called with the model's lock held.
namespace Orvane::MemoryModel {

/// An operation with its arguments, as it stands in the journal when it is asked for, begins and ends.
struct OperationCall {
    Operation operation;
    QString arguments;
};

/// `device=<identity>`, empty when the device is gone.
QString deviceText(const std::weak_ptr<BizModel::Device>& device);
/// `screen=<type>:<id>`
QString screenText(const BizModel::Screen& screen);
QString screenText(const std::weak_ptr<BizModel::Screen>& screen);
/// `screens=[<type>:<id>,...]`
QString screensText(const QList<std::weak_ptr<BizModel::Screen>>& screens);
/// `layers=[<scene>:<id>,...]`
QString layersText(const QList<std::weak_ptr<BizModel::Layer>>& layers);
/// `window=x,y,widthxheight`
QString windowText(const QRect& window);
/// `regular`, `AUX`, or the number of another type.
QString screenTypeText(int screenType);
/// `PGM` or `PVW`.
QString sceneText(int scene);

} // namespace Orvane::MemoryModel
