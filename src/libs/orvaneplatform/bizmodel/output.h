#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QtGlobal>

namespace Orvane::BizModel {

/// An output that shows a part of a screen's mosaic. Any thread may call any member at any time.
class ORVANEPLATFORM_EXPORT Output {
public:
    Output() = default;
    virtual ~Output();

    /// Place among the screen's outputs; new layers are spread over them in this order. 0 unless
    /// overridden: outputs of equal places keep the order of `Screen::outputs`.
    virtual int zOrder() const { return 0; }

private:
    Q_DISABLE_COPY_MOVE(Output)
};

} // namespace Orvane::BizModel
