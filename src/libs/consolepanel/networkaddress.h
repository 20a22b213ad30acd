#pragma once

#include <QString>

#include <optional>

namespace Orvane::ConsolePanel {

/// A network address of the wire as text. The number's highest byte stands first, so 0xC0A8000A is
/// 192.168.0.10.
QString addressText(quint32 address);

/// The number of a dotted address, or of a plain decimal or 0x number; empty when it is neither.
std::optional<quint32> addressFromText(const QString& text);

} // namespace Orvane::ConsolePanel
