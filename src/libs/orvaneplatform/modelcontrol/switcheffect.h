#pragma once

namespace Orvane::ModelControl {

/// Description of a transition.
struct s_SwitchEffectBody {
    /// In tenths of a second.
    int time = 0;
    /// As the model defines it; the console asks with 0.
    int direction = 0;
    /// A `BizModel::EffectType` value.
    int type = 0;
};

} // namespace Orvane::ModelControl
