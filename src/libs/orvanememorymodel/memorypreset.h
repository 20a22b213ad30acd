#pragma once

#include "modelhub.h"
#include "orvaneplatform/bizmodel/preset.h"
#include "records.h"

namespace Orvane::MemoryModel {

/// A preset file with the scenes that it stores.
class MemoryPreset final : public BizModel::Preset {
public:
    MemoryPreset(
        std::shared_ptr<ModelHub> hub, std::weak_ptr<BizModel::Device> device, const PresetRecord& record);

    quint16 fileId() const override { return m_nId; }
    FileType fileType() const override { return m_type; }
    QString name() const override { return data(Guard(*m_pHub)).name; }
    bool presetSelectedScreens(
        QList<std::weak_ptr<BizModel::Screen>>& screens, FileType type, QString& error) const override;

    const PresetRecord& data(const Guard& guard) const { return m_record.get(guard); }
    PresetRecord& data(Change& change) { return m_record.get(change); }

private:
    const std::shared_ptr<ModelHub> m_pHub;
    const std::weak_ptr<BizModel::Device> m_pDevice;
    const FileType m_type;
    const quint16 m_nId;
    Guarded<PresetRecord> m_record;
};

} // namespace Orvane::MemoryModel
