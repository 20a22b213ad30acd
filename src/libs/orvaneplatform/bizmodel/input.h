#pragma once

#include "orvaneplatform/bizmodel/interface.h"

namespace Orvane::BizModel {

/// A source that layers can show.
class ORVANEPLATFORM_EXPORT Input : public Interface {
public:
    ~Input() override;

    InterfaceType type() const override { return InterfaceType::Input; }
};

} // namespace Orvane::BizModel
