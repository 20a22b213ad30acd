#pragma once

#include "orvaneplatform/bizmodel/file.h"
#include "orvaneplatform/protomodel/file.h"

#include <optional>

namespace Orvane::BizModel {

/// A keypad file: the colours of a console's keys and the presets loaded last. Never changes once it is
/// made; a new state is a new file.
class ORVANEPLATFORM_EXPORT Keypad : public File {
public:
    /// A file with these contents.
    explicit Keypad(ProtoModel::File::s_KeypadInfo info, quint16 fileId = 0, QString name = {});
    ~Keypad() override;

    quint16 fileId() const override { return m_nFileId; }
    FileType fileType() const override { return FileType::keypad; }
    QString name() const override { return m_strName; }

    /// The contents.
    const ProtoModel::File::s_KeypadInfo& keypadInfo() const { return m_info; }
    /// Colour of the key with this number; none when the file does not say.
    std::optional<quint8> buttonColor(quint8 buttonId) const;

private:
    const ProtoModel::File::s_KeypadInfo m_info;
    const quint16 m_nFileId;
    const QString m_strName;
};

} // namespace Orvane::BizModel
