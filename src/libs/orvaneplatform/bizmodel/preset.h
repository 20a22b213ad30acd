#pragma once

#include "orvaneplatform/bizmodel/file.h"
#include "orvaneplatform/bizmodel/fwd.h"

#include <QList>

#include <memory>

namespace Orvane::BizModel {

/// What a preset is called.
struct s_PresetDetail {
    /// The preset's file id.
    quint16 id = 0;
    QString name; ///< as keys and application show it
};

/// A stored scene.
class ORVANEPLATFORM_EXPORT Preset : public File {
public:
    /// The enumeration, by its short name.
    using PresetOptMode = Enum::Preset::PresetOptMode;

    ~Preset() override;

    /// The file's id and name unless overridden.
    virtual s_PresetDetail presetDetail() const { return {fileId(), name()}; }
    /// Puts the screens that loading the preset as @p type changes into @p screens. False, with the reason
    /// in @p error, when they cannot be told, and unless overridden; the load goes on without them.
    virtual bool presetSelectedScreens(
        QList<std::weak_ptr<Screen>>& screens, Enum::File::FileType type, QString& error) const;
};

} // namespace Orvane::BizModel
