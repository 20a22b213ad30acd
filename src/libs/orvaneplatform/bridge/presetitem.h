#pragma once

#include "orvaneplatform/bizmodel/preset.h"
#include "orvaneplatform/bridge/sharedvalue.h"

namespace Orvane::Bridge {

/// A preset by its slot; what it stores is your model's. Any thread.
class ORVANEPLATFORM_EXPORT PresetItem : public BizModel::Preset {
public:
    /// At first it is called "Preset " and its slot, which counts from 1.
    explicit PresetItem(quint16 slot, FileType type = FileType::PresetPVW);
    ~PresetItem() override;

    quint16 fileId() const override { return m_nSlot; }
    FileType fileType() const override { return m_type; }
    QString name() const override { return m_name.get(); }
    /// False when it is called so already. `DeviceList::signalNameChanged` announces it.
    bool setName(const QString& name) { return m_name.set(name); }

private:
    const quint16 m_nSlot;
    const FileType m_type;
    SharedValue<QString> m_name;
};

} // namespace Orvane::Bridge
